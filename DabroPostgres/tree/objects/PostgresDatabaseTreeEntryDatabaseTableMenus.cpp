// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The context menu of a table, view or materialized view.
#include "driver/PostgresDatabaseClient.h"
#include "query/StaticQueryLoader.h"
#include "scripts/table/PostgresScriptCreateTableQueryLoader.h"
#include "scripts/table/PostgresScriptDropAndCreateTableQueryLoader.h"
#include "scripts/table/PostgresScriptDropTableQueryLoader.h"
#include "scripts/table/PostgresScriptInsertToTableQueryLoader.h"
#include "scripts/view/PostgresScriptAlterMateralizedViewQueryLoader.h"
#include "scripts/view/PostgresScriptAlterViewQueryLoader.h"
#include "scripts/view/PostgresScriptCreateViewQueryLoader.h"
#include "scripts/view/PostgresScriptDropAndCreateViewQueryLoader.h"
#include "scripts/view/PostgresScriptDropViewQueryLoader.h"
#include "tree/PostgresTreeMenu.h"
#include "tree/PostgresTreeText.h"
#include "tree/objects/PostgresDatabaseTreeEntryDatabaseTable.h"

using Text = PostgresTreeText;
using Actions = PostgresDatabaseTreeActions;

namespace
{

using Table = PostgresDatabaseTreeEntryDatabaseTable;

// A kind's own wording of one item.
QString titleFor(Table::TableType type, const QString &table, const QString &view,
                 const QString &materializedView)
{
    if (type == Table::TableType::Table)
        return table;
    return type == Table::TableType::View ? view : materializedView;
}

template<typename Loader>
DXMenu tableScript(Table &table, const QString &title)
{
    return table.createScriptToOptionsMenu(
        title, std::make_shared<Loader>(typename Loader::Init{.tableName = table.tableName(),
                                                              .schema = table.schema()}));
}

template<typename Loader>
DXMenu viewScript(Table &table, const QString &title)
{
    const bool isMaterialized = table.tableType() == Table::TableType::MaterializedView;
    return table.createScriptToOptionsMenu(
        title, std::make_shared<Loader>(typename Loader::Init{.view = table.tableName(),
                                                              .schema = table.schema(),
                                                              .isMaterialized = isMaterialized}));
}

} // namespace

DXMenu PostgresDatabaseTreeEntryDatabaseTable::menu()
{
    PostgresTreeMenu menu(*this);
    menu.newQuery().separator();
    addNewAndAlterItems(menu);
    menu.drop(titleFor(m_tableType, Text::tr("Drop table"), Text::tr("Drop view"),
                       Text::tr("Drop materialized view")),
              &Actions::confirmDropTable);
    if (m_tableType == TableType::MaterializedView)
        addRefreshItem(menu);
    if (isTable())
        menu.action(QStringLiteral("Insert"), &Actions::displayInsertDialog,
                    Actions::Capability::InsertRow);
    menu.separator().item(Text::tr("Select top 100 rows"),
                          [query = selectQuery()](auto &helper, const auto &entry) {
                              helper.executeQueryTab(entry, query);
                          });
    menu.submenu(createScriptAsMenu());
    if (isTable())
        menu.separator().submenu(exportMenu()).import();
    return menu.separator().refresh().menu();
}

void PostgresDatabaseTreeEntryDatabaseTable::addRefreshItem(PostgresTreeMenu &menu)
{
    const auto loader = std::make_shared<StaticQueryLoader>(
        QStringLiteral("REFRESH MATERIALIZED VIEW %1;").arg(dragDropString()));
    menu.item(Text::tr("Refresh materialized view"), [loader](auto &helper, const auto &entry) {
        helper.addAndExecuteQueryTabWithQueryLoader(entry, loader);
    });
}

DXMenu PostgresDatabaseTreeEntryDatabaseTable::exportMenu()
{
    const QString path =
        PostgresDatabaseClient::escapeTableNameIfRequired(m_schema + u'.' + tableName());
    return PostgresTreeMenu(*this, QStringLiteral("Export"))
        .item(Text::tr("CSV"),
              [path](auto &helper, const auto &entry) { helper.exportTableAsCSV(entry, path); })
        .menu();
}

void PostgresDatabaseTreeEntryDatabaseTable::addNewAndAlterItems(PostgresTreeMenu &menu)
{
    switch (m_tableType) {
    case TableType::Table:
        menu.newTable()
            .action(Text::tr("Alter table"), &Actions::alterTable, Actions::Capability::AlterTable)
            .action(Text::tr("Rename table"), &Actions::renameTable,
                    Actions::Capability::RenameTable, DXMenu::Key::Rename);
        break;
    case TableType::View:
        menu.newView().loaderTab(Text::tr("Alter view"),
                                 std::make_shared<PostgresScriptAlterViewQueryLoader>(tableName()));
        break;
    case TableType::MaterializedView:
        menu.newView().loaderTab(Text::tr("Alter materialized view"),
                                 std::make_shared<PostgresScriptAlterMateralizedViewQueryLoader>(
                                     PostgresScriptAlterMateralizedViewQueryLoader::Init{
                                         .view = tableName(), .schema = m_schema}));
        break;
    }
}

DXMenu PostgresDatabaseTreeEntryDatabaseTable::createScriptAsMenu()
{
    DXMenu menu(Text::tr("Script as"));
    switch (m_tableType) {
    case TableType::Table:
        addTableScripts(menu);
        break;
    case TableType::View:
    case TableType::MaterializedView:
        addViewScripts(menu);
        break;
    }
    return menu;
}

DXMenu PostgresDatabaseTreeEntryDatabaseTable::createDumpTableMenu()
{
    DXMenu menu(Text::tr("Dump SQL file"));
    menu.addSubmenu(
        tableScript<PostgresScriptCreateTableQueryLoader>(*this, Text::tr("Structure Only")));
    menu.addSubmenu(
        tableScript<PostgresScriptDropTableQueryLoader>(*this, Text::tr("Structure + Data")));
    return menu;
}

void PostgresDatabaseTreeEntryDatabaseTable::addTableScripts(DXMenu &menu)
{
    menu.addSubmenu(
        tableScript<PostgresScriptCreateTableQueryLoader>(*this, Text::tr("CREATE to")));
    menu.addSubmenu(tableScript<PostgresScriptDropTableQueryLoader>(*this, Text::tr("DROP to")));
    menu.addSubmenu(tableScript<PostgresScriptDropAndCreateTableQueryLoader>(
        *this, Text::tr("DROP and CREATE to")));
    menu.addSeparator();
    menu.addSubmenu(createScriptToOptionsMenu(
        Text::tr("INSERT to"), std::make_shared<PostgresScriptInsertToTableQueryLoader>(
                                   QStringList{m_schema, tableName()})));
}

void PostgresDatabaseTreeEntryDatabaseTable::addViewScripts(DXMenu &menu)
{
    menu.addSubmenu(viewScript<PostgresScriptCreateViewQueryLoader>(*this, Text::tr("CREATE to")));
    menu.addSubmenu(viewScript<PostgresScriptDropViewQueryLoader>(*this, Text::tr("DROP to")));
    menu.addSubmenu(viewScript<PostgresScriptDropAndCreateViewQueryLoader>(
        *this, Text::tr("DROP and CREATE to")));
}
