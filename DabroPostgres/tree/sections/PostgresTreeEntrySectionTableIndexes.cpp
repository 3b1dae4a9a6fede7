// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/sections/PostgresTreeEntrySectionTableIndexes.h"

#include "scripts/PostgresScriptText.h"
#include "tree/PostgresTreeMenu.h"
#include "tree/PostgresTreeText.h"
#include "tree/objects/PostgresTreeEntryTableIndex.h"

PostgresTreeEntrySectionTableIndexes::PostgresTreeEntrySectionTableIndexes(const Init &init)
    : PostgresDatabaseTreeEntrySection(QString())
    , m_init(init)
{ }

QString PostgresTreeEntrySectionTableIndexes::displayName() const
{
    return PostgresTreeText::tr("Indexes");
}

DXMenu PostgresTreeEntrySectionTableIndexes::menu()
{
    return PostgresTreeMenu(*this).refresh().menu();
}

PostgresCatalogueQuery
PostgresTreeEntrySectionTableIndexes::query(const QString &serverVersion) const
{
    Q_UNUSED(serverVersion)
    const PostgresScriptText::Replacement schema =
        m_init.schema.isEmpty()
            ? PostgresScriptText::Replacement{QLatin1String("'{TABLE_SCHEMA}'"),
                                              QStringLiteral("(current_schemas(false))[1]"), false}
            : PostgresScriptText::Replacement{QLatin1String("{TABLE_SCHEMA}"), m_init.schema};
    return PostgresScriptText::query(QStringLiteral("Table_IndexesForDesigner"),
                                     {schema, {QLatin1String("{TABLE_NAME}"), m_init.tableName}});
}

QString PostgresTreeEntrySectionTableIndexes::errorDomain() const
{
    return QStringLiteral("postgres.databaseTree.loadIndexes");
}

std::shared_ptr<DXDatabaseTreeEntry>
PostgresTreeEntrySectionTableIndexes::makeEntry(const DatabaseResultSet &row,
                                                const Naming &naming) const
{
    Q_UNUSED(naming)
    return std::make_shared<PostgresTreeEntryTableIndex>(
        PostgresTreeEntryTableIndex::Init{.schema = m_init.schema, .indexName = text(row, 0)});
}
