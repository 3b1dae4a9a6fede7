// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/sections/PostgresDatabaseTreeEntrySectionStoredProcedures.h"

#include "scripts/PostgresScriptText.h"
#include "tree/PostgresTreeMenu.h"
#include "tree/PostgresTreeQuery.h"
#include "tree/objects/PostgresDatabaseTreeEntryFunction.h"

using Function = PostgresDatabaseTreeEntryFunction;

PostgresDatabaseTreeEntrySectionStoredProcedures::PostgresDatabaseTreeEntrySectionStoredProcedures(
    const QString &parentSchema)
    : PostgresDatabaseTreeEntrySection(parentSchema)
{ }

QString PostgresDatabaseTreeEntrySectionStoredProcedures::displayName() const
{
    return QStringLiteral("Functions");
}

DXMenu PostgresDatabaseTreeEntrySectionStoredProcedures::menu()
{
    return PostgresTreeMenu(*this)
        .newQuery()
        .separator()
        .newFunction(QStringLiteral("New function"))
        .separator()
        .refresh()
        .menu();
}

PostgresCatalogueQuery
PostgresDatabaseTreeEntrySectionStoredProcedures::query(const QString &serverVersion) const
{
    return PostgresScriptText::query(
        PostgresTreeQuery::titleFor(QStringLiteral("List_StoredProceduresInDatabase_NonSystem"),
                                    serverVersion),
        {schemaClause(QStringLiteral("AND n.nspname = '%1'"))});
}

QString PostgresDatabaseTreeEntrySectionStoredProcedures::errorDomain() const
{
    return QStringLiteral("postgres.databaseTree.loadProcedures");
}

std::shared_ptr<DXDatabaseTreeEntry>
PostgresDatabaseTreeEntrySectionStoredProcedures::makeEntry(const DatabaseResultSet &row,
                                                            const Naming &naming) const
{
    QString overload = text(row, 1);
    if (overload == QLatin1String("()"))
        overload = QLatin1String("");
    auto function =
        std::make_shared<Function>(Function::Init{.functionName = text(row, 0),
                                                  .overload = overload,
                                                  .schema = text(row, 2),
                                                  .defaultSchema = naming.defaultSchema,
                                                  .displaySchema = naming.displaySchema});
    function->setDetails(overload);
    return function;
}

std::optional<QString>
PostgresDatabaseTreeEntrySectionStoredProcedures::sortName(const DXDatabaseTreeEntry &entry) const
{
    return static_cast<const Function &>(entry).functionName();
}

// The overloads of a name.
bool PostgresDatabaseTreeEntrySectionStoredProcedures::comesBefore(
    const DXDatabaseTreeEntry &left, const DXDatabaseTreeEntry &right) const
{
    return static_cast<const Function &>(left).functionOverload()
           < static_cast<const Function &>(right).functionOverload();
}
