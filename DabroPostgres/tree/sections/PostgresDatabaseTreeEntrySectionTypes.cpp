// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/sections/PostgresDatabaseTreeEntrySectionTypes.h"

#include "scripts/PostgresScriptText.h"
#include "tree/PostgresTreeMenu.h"
#include "tree/PostgresTreeText.h"
#include "tree/objects/PostgresDatabaseTreeEntryType.h"

using Type = PostgresDatabaseTreeEntryType;

PostgresDatabaseTreeEntrySectionTypes::PostgresDatabaseTreeEntrySectionTypes(
    const QString &parentSchema)
    : PostgresDatabaseTreeEntrySection(parentSchema)
{ }

QString PostgresDatabaseTreeEntrySectionTypes::displayName() const
{
    return PostgresTreeText::tr("Types");
}

DXMenu PostgresDatabaseTreeEntrySectionTypes::menu()
{
    return PostgresTreeMenu(*this).newQuery().separator().refresh().menu();
}

PostgresCatalogueQuery
PostgresDatabaseTreeEntrySectionTypes::query(const QString &serverVersion) const
{
    Q_UNUSED(serverVersion)
    return PostgresScriptText::query(QStringLiteral("Postgres_ListCustomTypes"),
                                     {schemaClause(QStringLiteral("AND n.nspname = '%1'"))});
}

QString PostgresDatabaseTreeEntrySectionTypes::errorDomain() const
{
    return QStringLiteral("postgres.databaseTree.loadTypes");
}

std::shared_ptr<DXDatabaseTreeEntry>
PostgresDatabaseTreeEntrySectionTypes::makeEntry(const DatabaseResultSet &row,
                                                 const Naming &naming) const
{
    const bool isEnumeration = text(row, 2).startsWith(u'e', Qt::CaseInsensitive);
    return std::make_shared<Type>(Type::Init{.typeName = text(row, 1),
                                             .schema = text(row, 0),
                                             .userType = !isEnumeration,
                                             .defaultSchema = naming.defaultSchema,
                                             .displaySchema = naming.displaySchema});
}

std::optional<QString>
PostgresDatabaseTreeEntrySectionTypes::sortName(const DXDatabaseTreeEntry &entry) const
{
    return static_cast<const Type &>(entry).typeName();
}
