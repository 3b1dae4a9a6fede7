// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "actions/PostgresDatabaseTreeContextHelper.h"

#include "actions/PostgresTreeCounterparts.h"
#include "client/DabroDBC.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "dispatch/DXDispatch.h"
#include "driver/PostgresDatabaseClient.h"
#include "driver/PostgresSystemDatabaseQueries.h"
#include "query/StaticQueryLoader.h"
#include "scripts/object/PostgresScriptDropDatabaseQueryLoader.h"
#include "scripts/object/PostgresScriptDropFunctionQueryLoader.h"
#include "scripts/object/PostgresScriptDropIndexQueryLoader.h"
#include "scripts/object/PostgresScriptDropSequenceQueryLoader.h"
#include "scripts/object/PostgresScriptDropTypeQueryLoader.h"
#include "scripts/table/PostgresScriptDropColumnInTableQueryLoader.h"
#include "scripts/table/PostgresScriptDropTableQueryLoader.h"
#include "scripts/view/PostgresScriptDropViewQueryLoader.h"
#include "tree/PostgresDatabaseTreeEntryDatabase.h"
#include "tree/objects/PostgresDatabaseTreeEntryDatabaseTable.h"
#include "tree/objects/PostgresDatabaseTreeEntryDatabaseTableColumn.h"
#include "tree/objects/PostgresDatabaseTreeEntryFunction.h"
#include "tree/objects/PostgresDatabaseTreeEntrySequence.h"
#include "tree/objects/PostgresDatabaseTreeEntryType.h"
#include "tree/objects/PostgresTreeEntryTableIndex.h"
#include "ui/DXAlwaysVisibleUserNotification.h"
#include "ui/query/DXQueryPreviewViewController.h"

#include <algorithm>

namespace
{

using Table = PostgresDatabaseTreeEntryDatabaseTable;
using Delegate = DXDatabaseTreeViewControllerDelegate;

// Scripts put quotes around capitals and blanks, but take a dot for a path and any other sign for
// what it says. They leave a name alone that has its quotes already.
QString written(const QString &name)
{
    const auto isPlain = [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9') || c == u'_';
    };
    if (name.isEmpty()
        || (!name.front().isDigit() && std::all_of(name.begin(), name.end(), isPlain)))
        return PostgresDatabaseClient::escapeTableNameIfRequired(name);
    return u'"' + QString(name).replace(u'"', QLatin1String("\"\"")) + u'"';
}

std::shared_ptr<DXQueryLoader> loaderFor(const Table &table)
{
    if (table.tableType() == Table::TableType::Table) {
        using Loader = PostgresScriptDropTableQueryLoader;
        return std::make_shared<Loader>(Loader::Init{.tableName = written(table.tableName()),
                                                     .schema = written(table.schema())});
    }
    using Loader = PostgresScriptDropViewQueryLoader;
    return std::make_shared<Loader>(
        Loader::Init{.view = written(table.tableName()),
                     .schema = written(table.schema()),
                     .isMaterialized = table.tableType() == Table::TableType::MaterializedView});
}

} // namespace

/// One kind's part of dropping something.
struct PostgresDatabaseTreeContextHelper::Drop
{
    std::shared_ptr<DXQueryLoader> loader;
    QString question;
    QString informativeText;
    QString progressTitle;
    DXAlwaysVisibleUserNotification notification;
    // The node's own unless given.
    std::shared_ptr<DabroDBC> connectionDetails = {};
    bool useTransaction = true;
    std::function<void()> preparation = {};
};

PostgresDatabaseTreeContextHelper::~PostgresDatabaseTreeContextHelper() = default;

bool PostgresDatabaseTreeContextHelper::isCapableOf(Capability capability, const Entry &entry) const
{
    return capability == Capability::AlterTable
           && entry.databaseConnectionDetails()->createTableDesignerViewController();
}

void PostgresDatabaseTreeContextHelper::newStoredProcedure()
{
    const auto entry = databaseTreeViewController().currentlySelectedDatabaseTreeEntry();
    if (!entry)
        return;
    addQueryTabWithQueryLoader(
        *entry, std::make_shared<StaticQueryLoader>(PostgresSystemDatabaseQueries::queryByTitle(
                    QStringLiteral("NewStoredProcedure"))));
}

void PostgresDatabaseTreeContextHelper::addNewTable(const Entry &entry, const QString &query)
{
    addQueryTab(entry, query);
}

void PostgresDatabaseTreeContextHelper::alterTable(const Entry &entry)
{
    if (const auto *const table = dynamic_cast<const Table *>(&entry))
        databaseTreeViewController().delegate().alterTableNamed(table->tableName(), table->schema(),
                                                                table->databaseConnectionDetails());
}

void PostgresDatabaseTreeContextHelper::confirmDrop(const Entry &entry, const Drop &drop)
{
    const auto preview = entry.databaseConnectionDetails()->createQueryPreviewViewContoller();
    if (drop.connectionDetails)
        preview->setConnectionDetails(drop.connectionDetails);
    preview->setTitle(drop.question);
    preview->setInformativeText(drop.informativeText);
    preview->setAcceptButtonTitle(tr("Drop"));
    preview->setProgressTitle(drop.progressTitle);
    preview->setQueryLoader(drop.loader);
    preview->setUseTransaction(drop.useTransaction);
    preview->setPreparation(drop.preparation);
    preview->setOpenInQueryTab(
        [self = weak_from_this(), details = preview->connectionDetails()](const QString &script) {
            if (const auto helper = self.lock())
                helper->databaseTreeViewController().delegate().addNewQueryTab(
                    script, details, Delegate::QueryTab::Open);
        });
    preview->beginSheetForWindow(
        databaseTreeViewController().delegate().targetWindow(),
        [self = weak_from_this(), node = entry.shared_from_this(), drop](int result) {
            if (const auto helper = result == 1 ? self.lock() : nullptr)
                helper->dropped(*node, drop);
        });
}

void PostgresDatabaseTreeContextHelper::dropped(const Entry &entry, const Drop &drop)
{
    const auto remove = [](const Entry &gone) {
        if (const auto parent = gone.parent())
            parent->removeChild(gone);
    };
    const auto roots = databaseTreeViewController().allRoots();
    for (const auto &counterpart : PostgresTreeCounterparts::find(roots, entry))
        remove(*counterpart);
    remove(entry);
    databaseTreeViewController().deselectAll();
    databaseTreeViewController().reloadData();
    drop.notification.deliver();
    for (const auto &database : PostgresTreeCounterparts::databasesOf(roots, entry))
        refreshSearch(database);
}

// Searches would find it, and what went with it, until somebody refreshes the whole tree.
void PostgresDatabaseTreeContextHelper::refreshSearch(const std::shared_ptr<Entry> &database)
{
    if (!static_cast<const PostgresDatabaseTreeEntryDatabase &>(*database).searchResults())
        return;
    DXDispatch::background([database] {
        database->updateSearchResults(nullptr);
        // Behind what the database has queued for that thread.
        DXDispatch::main([database] {
            const auto told = database->delegate();
            if (const auto root = told ? database->parent() : nullptr)
                told->databaseTreeEntryDidUpdateSearchResults(*root);
        });
    });
}

void PostgresDatabaseTreeContextHelper::confirmDropDatabase(const Entry &entry)
{
    const auto *const database = dynamic_cast<const PostgresDatabaseTreeEntryDatabase *>(&entry);
    if (!database)
        return;
    const QString name = database->databaseName();
    // The server refuses while anybody is connected to it, our own idle connections among them.
    const auto own = database->databaseConnectionDetails();
    const auto server = own->copy();
    server->setDatabase({});
    confirmDrop(entry,
                {.loader = std::make_shared<PostgresScriptDropDatabaseQueryLoader>(
                     // The template has the quotes around the name.
                     QString(name).replace(u'"', QLatin1String("\"\""))),
                 .question = tr("Do you really want to drop the database '%1'?").arg(name),
                 .informativeText = tr("Once a database has been removed, it cannot be recovered."),
                 .progressTitle = tr("Dropping database '%1'").arg(name),
                 .notification = {.title = tr("Database has been dropped"),
                                  .text = tr("Database '%1' has been dropped").arg(name)},
                 .connectionDetails = server,
                 .useTransaction = false,
                 .preparation = [own] { DabroDatabaseConnectionPool::disconnectAll(*own); }});
}

void PostgresDatabaseTreeContextHelper::confirmDropTable(const Entry &entry)
{
    const auto *const table = dynamic_cast<const Table *>(&entry);
    if (!table)
        return;
    QString kind = tr("table");
    DXAlwaysVisibleUserNotification told{.title = tr("Table has been dropped"),
                                         .text = tr("The table %1.%2 has been dropped.")};
    if (table->tableType() == Table::TableType::View) {
        kind = tr("view");
        told = {.title = tr("View has been dropped"),
                .text = tr("The view %1.%2 has been dropped.")};
    } else if (table->tableType() == Table::TableType::MaterializedView) {
        kind = tr("materialized view");
        told = {.title = tr("Materialized view has been dropped"),
                .text = tr("The materialized view %1.%2 has been dropped.")};
    }
    told.text = told.text.arg(table->schema(), table->tableName());
    confirmDrop(
        entry,
        {.loader = loaderFor(*table),
         .question = tr("Do you really want to drop the %1 '%2'?").arg(kind, table->tableName()),
         .informativeText = tr("Once a %1 has been removed, it cannot be recovered.").arg(kind),
         .progressTitle = tr("Dropping %1 '%2'").arg(kind, table->tableName()),
         .notification = told});
}

void PostgresDatabaseTreeContextHelper::confirmDropColumn(const Entry &entry)
{
    using Loader = PostgresScriptDropColumnInTableQueryLoader;
    using Column = PostgresDatabaseTreeEntryDatabaseTableColumn;
    const auto *const column = dynamic_cast<const Column *>(&entry);
    if (!column)
        return;
    const QString name = column->columnName();
    confirmDrop(
        entry,
        {.loader = std::make_shared<Loader>(Loader::Init{.columnName = written(name),
                                                         .table = written(column->tableName()),
                                                         .schema = written(column->schema())}),
         .question = tr("Do you really want to drop the column '%1'?").arg(name),
         .informativeText = tr("Once a column has been removed, it cannot be recovered."),
         .progressTitle = tr("Dropping column '%1'").arg(name),
         .notification = {
             .title = tr("Column has been dropped"),
             .text = tr("Column %1 has been dropped from %2").arg(name, column->tableName())}});
}

void PostgresDatabaseTreeContextHelper::confirmDropFunction(const Entry &entry)
{
    using Loader = PostgresScriptDropFunctionQueryLoader;
    const auto *const function = dynamic_cast<const PostgresDatabaseTreeEntryFunction *>(&entry);
    if (!function)
        return;
    const QString name = function->functionName();
    confirmDrop(
        entry,
        {.loader = std::make_shared<Loader>(Loader::Init{.function = written(name),
                                                         .overload = function->functionOverload(),
                                                         .schema = written(function->schema())}),
         .question = tr("Do you really want to drop the function '%1'?").arg(name),
         .informativeText = tr("Once a function has been removed, it cannot be recovered."),
         .progressTitle = tr("Dropping function '%1'").arg(name),
         .notification = {.title = tr("Function has been dropped"),
                          .text = tr("Function %1 has been dropped").arg(name)}});
}

void PostgresDatabaseTreeContextHelper::confirmDropSequence(const Entry &entry)
{
    using Loader = PostgresScriptDropSequenceQueryLoader;
    const auto *const sequence = dynamic_cast<const PostgresDatabaseTreeEntrySequence *>(&entry);
    if (!sequence)
        return;
    const QString name = sequence->sequenceName();
    confirmDrop(entry,
                {.loader = std::make_shared<Loader>(Loader::Init{
                     .sequenceName = written(name), .schema = written(sequence->schema())}),
                 .question = tr("Do you really want to drop the sequence '%1'?").arg(name),
                 .informativeText = tr("Once a sequence has been removed, it cannot be recovered."),
                 .progressTitle = tr("Dropping sequence '%1'").arg(name),
                 .notification = {.title = tr("Sequence has been dropped"),
                                  .text = tr("Sequence %1 has been dropped").arg(name)}});
}

void PostgresDatabaseTreeContextHelper::confirmDropType(const Entry &entry)
{
    using Loader = PostgresScriptDropTypeQueryLoader;
    const auto *const type = dynamic_cast<const PostgresDatabaseTreeEntryType *>(&entry);
    if (!type)
        return;
    const QString name = type->typeName();
    confirmDrop(entry,
                {.loader = std::make_shared<Loader>(
                     Loader::Init{.typeName = written(name), .schema = written(type->schema())}),
                 .question = tr("Do you really want to drop the type '%1'?").arg(name),
                 .informativeText = tr("Once a type has been removed, it cannot be recovered."),
                 .progressTitle = tr("Dropping type '%1'").arg(name),
                 .notification = {.title = tr("Type has been dropped"),
                                  .text = tr("Type %1 has been dropped").arg(name)}});
}

void PostgresDatabaseTreeContextHelper::confirmDropIndex(const Entry &entry)
{
    using Loader = PostgresScriptDropIndexQueryLoader;
    const auto *const index = dynamic_cast<const PostgresTreeEntryTableIndex *>(&entry);
    if (!index)
        return;
    const QString name = index->indexName();
    confirmDrop(entry,
                {.loader = std::make_shared<Loader>(
                     Loader::Init{.indexName = written(name), .schema = written(index->schema())}),
                 .question = tr("Do you really want to drop the index '%1'?").arg(name),
                 .informativeText = tr("Once an index has been removed, it cannot be recovered."),
                 .progressTitle = tr("Dropping index '%1'").arg(name),
                 .notification = {.title = tr("Index has been dropped"),
                                  .text = tr("Index %1 has been dropped").arg(name)}});
}
