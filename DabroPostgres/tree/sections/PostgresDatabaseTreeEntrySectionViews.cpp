// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/sections/PostgresDatabaseTreeEntrySectionViews.h"

#include "scripts/PostgresScriptText.h"
#include "tree/PostgresTreeMenu.h"
#include "tree/PostgresTreeSorting.h"
#include "tree/PostgresTreeText.h"
#include "tree/objects/PostgresDatabaseTreeEntryDatabaseTable.h"

PostgresDatabaseTreeEntrySectionViews::PostgresDatabaseTreeEntrySectionViews(
    const QString &parentSchema)
    : PostgresDatabaseTreeEntrySection(parentSchema)
{ }

QString PostgresDatabaseTreeEntrySectionViews::displayName() const
{
    return m_materializedViews ? PostgresTreeText::tr("Materialized Views")
                               : PostgresTreeText::tr("Views");
}

DXMenu PostgresDatabaseTreeEntrySectionViews::menu()
{
    return PostgresTreeMenu(*this).newQuery().separator().newView().separator().refresh().menu();
}

PostgresCatalogueQuery
PostgresDatabaseTreeEntrySectionViews::query(const QString &serverVersion) const
{
    Q_UNUSED(serverVersion)
    const QString title = m_materializedViews
                              ? QStringLiteral("Postgres_ListDatabaseMaterializedViews")
                              : QStringLiteral("Postgres_ListDatabaseViews");
    const QString clause = m_materializedViews ? QStringLiteral("AND schemaname = '%1'")
                                               : QStringLiteral("AND table_schema = '%1'");
    return PostgresScriptText::query(title, {schemaClause(clause)});
}

QString PostgresDatabaseTreeEntrySectionViews::errorDomain() const
{
    return m_materializedViews ? QStringLiteral("postgres.databaseTree.loadMateralizedViews")
                               : QStringLiteral("postgres.databaseTree.loadViews");
}

std::shared_ptr<DXDatabaseTreeEntry>
PostgresDatabaseTreeEntrySectionViews::makeEntry(const DatabaseResultSet &row,
                                                 const Naming &naming) const
{
    using Table = PostgresDatabaseTreeEntryDatabaseTable;
    auto view = std::make_shared<Table>(Table::Init{.schema = text(row, 0),
                                                    .tableName = text(row, 1),
                                                    .defaultSchema = naming.defaultSchema,
                                                    .displaySchema = naming.displaySchema});
    view->setTableType(m_materializedViews ? Table::TableType::MaterializedView
                                           : Table::TableType::View);
    return view;
}

DXDatabaseTreeEntry::List PostgresDatabaseTreeEntrySectionViews::sortViews(List views)
{
    return PostgresTreeSorting::tables(std::move(views));
}
