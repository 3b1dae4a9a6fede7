// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/sections/PostgresDatabaseTreeEntrySectionTables.h"

#include "client/DabroDBC.h"
#include "core/DXLogHelper.h"
#include "scripts/PostgresScriptText.h"
#include "tree/DXDatabaseNotificationTable.h"
#include "tree/PostgresTreeMenu.h"
#include "tree/PostgresTreeSorting.h"
#include "tree/PostgresTreeText.h"
#include "tree/objects/PostgresDatabaseTreeEntryDatabaseTable.h"

#include <algorithm>

using Table = PostgresDatabaseTreeEntryDatabaseTable;

PostgresDatabaseTreeEntrySectionTables::PostgresDatabaseTreeEntrySectionTables(
    const QString &parentSchema)
    : PostgresDatabaseTreeEntrySection(parentSchema)
    , m_added(DXNotificationCenter::sharedInstance().observe(
          DXDatabaseNotificationTable::TableAddedNotificationName(),
          [this](const auto &notification) {
              tableWasAdded(DXDatabaseNotificationTable::from(notification));
          }))
    , m_removed(DXNotificationCenter::sharedInstance().observe(
          DXDatabaseNotificationTable::TableRemovedNotificationName(),
          [this](const auto &notification) {
              tableWasRemoved(DXDatabaseNotificationTable::from(notification));
          }))
{ }

PostgresDatabaseTreeEntrySectionTables::~PostgresDatabaseTreeEntrySectionTables() = default;

QString PostgresDatabaseTreeEntrySectionTables::displayName() const
{
    return PostgresTreeText::tr("Tables");
}

DXMenu PostgresDatabaseTreeEntrySectionTables::menu()
{
    return PostgresTreeMenu(*this)
        .newQuery()
        .separator()
        .newTable()
        .newView()
        .separator()
        .import()
        .exportAsSQLite()
        .separator()
        .refresh()
        .menu();
}

PostgresCatalogueQuery
PostgresDatabaseTreeEntrySectionTables::query(const QString &serverVersion) const
{
    Q_UNUSED(serverVersion)
    return PostgresScriptText::query(QStringLiteral("Postgres_ListDatabaseTables"),
                                     {schemaClause(QStringLiteral("AND table_schema = '%1'"))});
}

QString PostgresDatabaseTreeEntrySectionTables::errorDomain() const
{
    return QStringLiteral("postgres.databaseTree.loadTables");
}

std::shared_ptr<DXDatabaseTreeEntry>
PostgresDatabaseTreeEntrySectionTables::makeEntry(const DatabaseResultSet &row,
                                                  const Naming &naming) const
{
    return std::make_shared<Table>(Table::Init{.schema = text(row, 0),
                                               .tableName = text(row, 1),
                                               .defaultSchema = naming.defaultSchema,
                                               .displaySchema = naming.displaySchema});
}

DXDatabaseTreeEntry::List PostgresDatabaseTreeEntrySectionTables::sortTables(List tables)
{
    return PostgresTreeSorting::tables(std::move(tables));
}

void PostgresDatabaseTreeEntrySectionTables::addTable(const QString &tableName,
                                                      const QString &tableSchema)
{
    const auto added = std::make_shared<Table>(Table::Init{.schema = tableSchema,
                                                           .tableName = tableName,
                                                           .defaultSchema = defaultSchema(),
                                                           .displaySchema = -1});
    adoptChild(*added, databaseConnectionDetails());
    const auto isAnother = [&](const auto &entry) {
        const auto *const table = dynamic_cast<const Table *>(entry.get());
        return table && (table->tableName() != tableName || table->schema() != tableSchema);
    };
    changeChildEntries([&](const List &children) {
        // An error's leaf is no list to add to, and a table that a load has brought is there.
        if (!std::all_of(children.begin(), children.end(), isAnother))
            return children;
        return sortTables(children + List{added});
    });
}

void PostgresDatabaseTreeEntrySectionTables::tableWasAdded(const DXDatabaseNotificationTable &table)
{
    // Whoever holds the last pointer to this may be letting go of it.
    const auto self = weak_from_this().lock();
    const auto details = databaseConnectionDetails();
    if (!self || !details || !table.dbDetails
        || !details->isEqualToDatabaseConnectionDetails(*table.dbDetails))
        return;
    addTable(table.tableName, table.tableSchema);
    tellFinished();
}

void PostgresDatabaseTreeEntrySectionTables::tableWasRemoved(
    const DXDatabaseNotificationTable &table)
{
    const auto self = weak_from_this().lock();
    if (!self)
        return;
    DXLog(QStringLiteral("tableWasRemoved: %1.%2").arg(table.tableSchema, table.tableName));
    tellFinished();
}

void PostgresDatabaseTreeEntrySectionTables::tellFinished()
{
    if (const auto told = delegate())
        told->databaseTreeEntryDidFinishLoading(*this);
}
