// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/objects/PostgresDatabaseTreeEntryDatabaseTable.h"

#include "client/DatabaseResultSet.h"
#include "core/DXLogHelper.h"
#include "driver/PostgresCatalogueReader.h"
#include "driver/PostgresDatabaseClient.h"
#include "scripts/PostgresScriptText.h"
#include "tree/PostgresDatabaseTreeActions.h"
#include "tree/PostgresTreeNaming.h"
#include "tree/PostgresTreeQuery.h"
#include "tree/objects/PostgresDatabaseTreeEntryDatabaseTableColumn.h"
#include "tree/sections/PostgresDatabaseTreeEntrySectionTriggers.h"
#include "tree/sections/PostgresTreeEntrySectionTableIndexes.h"

PostgresDatabaseTreeEntryDatabaseTable::PostgresDatabaseTreeEntryDatabaseTable(const Init &init)
    : m_schema(init.schema)
    , m_defaultSchema(init.defaultSchema)
    , m_shouldDisplaySchema(PostgresTreeNaming::shouldDisplaySchema(init.schema, init.defaultSchema,
                                                                    init.displaySchema))
{
    setTableName(init.tableName);
    setDisplayName(init.tableName);
}

QString PostgresDatabaseTreeEntryDatabaseTable::displayName() const
{
    return PostgresTreeNaming::displayName(m_shouldDisplaySchema, m_schema, tableName());
}

QString PostgresDatabaseTreeEntryDatabaseTable::imageName() const
{
    switch (m_tableType) {
    case TableType::Table:
        return QStringLiteral("DatabaseTree-Table");
    case TableType::View:
        return QStringLiteral("DatabaseTree-View");
    case TableType::MaterializedView:
        return QStringLiteral("DatabaseTree-MaterializedView");
    }
    return {};
}

QString PostgresDatabaseTreeEntryDatabaseTable::dragDropString() const
{
    if (m_schema.isEmpty() || m_defaultSchema.isEmpty() || m_schema == m_defaultSchema)
        return PostgresDatabaseClient::escapeTableNameIfRequired(tableName());
    return PostgresDatabaseClient::escapeTablePaths(QStringList{m_schema, tableName()});
}

QString PostgresDatabaseTreeEntryDatabaseTable::selectQuery() const
{
    return QStringLiteral("SELECT * FROM %1 LIMIT 100;").arg(dragDropString());
}

void PostgresDatabaseTreeEntryDatabaseTable::cmdDown()
{
    if (const auto helper = contextHelper())
        helper->executeQueryTab(*this, selectQuery());
}

void PostgresDatabaseTreeEntryDatabaseTable::cmdRight()
{
    const auto helper = contextHelper();
    if (!helper)
        return;
    using Actions = PostgresDatabaseTreeActions;
    auto *const actions = dynamic_cast<Actions *>(helper.get());
    if (isTable() && actions && actions->isCapableOf(Actions::Capability::AlterTable, *this))
        actions->alterTable(*this);
    else
        helper->beep();
}

void PostgresDatabaseTreeEntryDatabaseTable::loadEntries(DXError *error)
{
    if (m_tableType == TableType::MaterializedView)
        loadColumnsForMateralizedView(error);
    else
        loadTableEntries(error);
}

PostgresCatalogueQuery
PostgresDatabaseTreeEntryDatabaseTable::columnsQuery(const QString &title) const
{
    const QString name = PostgresDatabaseClient::escapeTableNameIfRequired(tableName());
    return PostgresScriptText::query(title, {{QLatin1String("{TABLE_SCHEMA}"), m_schema},
                                             {QLatin1String("{TABLE_NAME}"), name}});
}

void PostgresDatabaseTreeEntryDatabaseTable::loadTableEntries(DXError *error)
{
    const PostgresCatalogueQuery query =
        columnsQuery(QStringLiteral("Postgres_ListColumnsInTable"));
    List children;
    DXError failure;
    PostgresCatalogueReader::read(
        *databaseConnectionDetails(), query,
        [&](const DatabaseResultSet &row) { children.append(makeColumn(row)); }, &failure);
    PostgresTreeQuery::reportFailure(
        failure, QStringLiteral("postgres.databaseTree.loadColumnsForTable"), query.text(), error);
    setChildEntries(children + makeFolders());
}

void PostgresDatabaseTreeEntryDatabaseTable::loadColumnsForMateralizedView(DXError *error)
{
    List children;
    DXError failure;
    PostgresCatalogueReader::read(
        *databaseConnectionDetails(),
        columnsQuery(QStringLiteral("Postgres_ListColumnsInMaterializedView")),
        [&](const DatabaseResultSet &row) { children.append(makeColumn(row)); }, &failure);
    if (failure) {
        DXLog(QStringLiteral("Error: %1").arg(failure.description()));
        DXError::report(error, failure);
        children.clear();
    }
    setChildEntries(children);
}

// Either kind's query: a materialized view's has no keys and no defaults.
std::shared_ptr<DXDatabaseTreeEntry>
PostgresDatabaseTreeEntryDatabaseTable::makeColumn(const DatabaseResultSet &row)
{
    using Column = PostgresDatabaseTreeEntryDatabaseTableColumn;
    const auto text = [&row](const char *column) {
        return row.stringForColumn(QLatin1String(column)).toText();
    };
    const bool isNullable = row.boolForColumn(QStringLiteral("is_nullable")).value_or(false);
    auto column = std::make_shared<Column>(
        Column::Init{.columnName = text("column_name"),
                     .tableName = tableName(),
                     .schema = m_schema,
                     .defaultSchema = m_defaultSchema,
                     .isPrimaryKey = row.boolForColumn(QStringLiteral("is_pk")).value_or(false),
                     .sequenceName = Column::sequenceNameOfDefault(text("default_value"))});
    column->setDetails(text("column_type")
                       + (isNullable ? QLatin1String(", nullable") : QLatin1String(", not null")));
    adoptChild(*column, databaseConnectionDetails());
    return column;
}

DXDatabaseTreeEntry::List PostgresDatabaseTreeEntryDatabaseTable::makeFolders()
{
    const List folders{std::make_shared<PostgresTreeEntrySectionTableIndexes>(
                           PostgresTreeEntrySectionTableIndexes::Init{
                               .schema = m_schema, .tableName = tableName(), .isView = !isTable()}),
                       std::make_shared<PostgresDatabaseTreeEntrySectionTriggers>(
                           PostgresDatabaseTreeEntrySectionTriggers::Init{
                               .schema = m_schema, .tableName = tableName()})};
    for (const auto &folder : folders)
        adoptChild(*folder);
    return folders;
}
