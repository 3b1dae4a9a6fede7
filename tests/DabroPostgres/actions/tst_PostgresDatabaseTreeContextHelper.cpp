// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/actions/OpenSheet.h"
#include "DabroPostgres/driver/ServerAccess.h"
#include "DabroPostgres/scripts/ScriptReceiver.h"
#include "actions/PostgresDatabaseTreeContextHelper.h"
#include "core/DXNotificationCenter.h"
#include "driver/PostgresConnectionHelper.h"
#include "support/Background.h"
#include "support/PrintQt.h"
#include "support/TreeWindow.h"
#include "tree/DatabaseTreeEntryServerRoot.h"
#include "ui/DXAlwaysVisibleUserNotification.h"
#include "ui/tree/DXDatabaseTreeModel.h"
#include "ui/tree/DXDatabaseTreeView.h"

#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTreeView>
#include <QVBoxLayout>

#include <gmock/gmock.h>

namespace
{

using Entry = std::shared_ptr<DXDatabaseTreeEntry>;

constexpr auto schema = R"sql(
CREATE TABLE orders (id integer PRIMARY KEY, note text, "x""y.z" integer);
CREATE INDEX orders_note ON orders (note);
CREATE INDEX "i.j;" ON orders (note);
CREATE TABLE bystander ();
CREATE TABLE "a;drop/**/table/**/bystander" ();
CREATE TABLE "select" ();
CREATE VIEW cheap AS SELECT 1 AS one;
CREATE VIEW "v.w" AS SELECT 1 AS one;
CREATE MATERIALIZED VIEW totals AS SELECT 2 AS two;
CREATE FUNCTION total(a integer, text) RETURNS integer LANGUAGE sql AS 'SELECT 1';
CREATE FUNCTION "f""(;"() RETURNS integer LANGUAGE sql AS 'SELECT 1';
CREATE SEQUENCE numbers;
CREATE SEQUENCE "s""q";
CREATE TYPE mood AS ENUM ('up');
CREATE TYPE "t.T;" AS (a integer);
CREATE TABLE owned (id integer PRIMARY KEY);
CREATE VIEW owners AS SELECT id FROM owned;
CREATE TABLE locked ();
CREATE SCHEMA away;
CREATE TABLE away.hit (id integer, other integer);
CREATE FUNCTION away.hit(a integer) RETURNS integer LANGUAGE sql AS 'SELECT 1';
CREATE FUNCTION away.hit(a text) RETURNS integer LANGUAGE sql AS 'SELECT 1';
)sql";

struct Kind
{
    const char *description;
    // From the server's node down.
    QStringList path;
    QString question;
    QString information;
    QString script;
    QString title;
    QString text;
};

// What exists, as psql tells it: everything that the tests drop.
QStringList existing()
{
    return PostgresCluster::shared()
        .psql(u"SELECT relname FROM pg_class WHERE relnamespace = 'public'::regnamespace "
              "UNION ALL SELECT attname FROM pg_attribute JOIN pg_class ON attrelid = pg_class.oid "
              "WHERE relname = 'orders' AND attnum > 0 AND NOT attisdropped "
              "UNION ALL SELECT proname FROM pg_proc WHERE pronamespace = 'public'::regnamespace "
              "UNION ALL SELECT typname FROM pg_type WHERE typnamespace = 'public'::regnamespace "
              "AND typtype = 'e' UNION ALL SELECT datname FROM pg_database ORDER BY 1"_qs,
              u"actions"_qs)
        .split(u'\n');
}

// What was there before and is no more.
QStringList gone(const QStringList &before)
{
    QStringList names = before;
    for (const QString &name : existing())
        names.removeOne(name);
    return names;
}

class TreeActionsTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        // No desktop of whoever runs this is told.
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
        PostgresCluster &server = PostgresCluster::shared();
        server.createDatabase(u"actions"_qs);
        server.psql(QString::fromLatin1(schema), u"actions"_qs);
        server.createDatabase(u"victim"_qs);
        server.psql(u"CREATE DATABASE \"d\"\"b; x\""_qs);
    }
    TreeActionsTest()
    {
        details->setDatabase({});
        PostgresConnectionHelper::sharedInstance().setGroupBySchemaForDBC(true, *details);
        main.resize(900, 600);
        (new QVBoxLayout(&main))->addWidget(view);
        main.show();
        window.target = &main;
        root->setDatabaseConnectionDetails(details);
        root->setContextHelper(helper);
        view->addRoot(root);
    }

    Entry node(const QStringList &path) const
    {
        Entry entry = root;
        for (const QString &name : path) {
            entry->loadEntriesAsync(DXDatabaseTreeEntry::Reload::IfNeeded);
            const auto find = [&]() -> Entry {
                const auto children = entry->childEntries();
                for (const auto &child : children ? *children : DXDatabaseTreeEntry::List())
                    if (child->displayName() == name)
                        return child;
                return {};
            };
            if (!DXWait::until([&] { return find() != nullptr; }))
                qFatal("No node %s", qPrintable(name));
            entry = find();
        }
        return entry;
    }
    static void chooseDrop(const Entry &entry)
    {
        const DXMenu menu = entry->menu();
        ASSERT_TRUE(menu.itemForKey(DXMenu::Key::Drop));
        menu.itemForKey(DXMenu::Key::Drop)->action();
    }
    bool isTold(const QString &title, const QString &text) const
    {
        return DXWait::until([&] { return told.contains(title + u": "_qs + text); });
    }

    const ServerAccess::Record details = ServerAccess::record(PostgresCluster::shared());
    TreeWindow window;
    QWidget main;
    DXDatabaseTreeView *const view = new DXDatabaseTreeView(window);
    const std::shared_ptr<DatabaseTreeEntryServerRoot> root = details->createRootDatabaseTreeNode();
    const std::shared_ptr<DXDatabaseTreeContextHelper> helper =
        details->createDatabaseTreeContextHelper(*view);
    QStringList told;
    const std::shared_ptr<void> toldObserver = DXNotificationCenter::sharedInstance().observe(
        DXAlwaysVisibleUserNotification::undeliveredNotificationName(), [this](const auto &each) {
            told += each.userInfo[DXAlwaysVisibleUserNotification::titleKey()].toString() + u": "_qs
                    + each.userInfo[DXAlwaysVisibleUserNotification::textKey()].toString();
        });
};

QList<Kind> kinds()
{
    const auto at = [](const char *section, const char *name) {
        return QStringList{u"actions"_qs, QString::fromUtf8(section), QString::fromUtf8(name)};
    };
    const QStringList orders = at("Tables", "orders");
    const QString column = u"Once a column has been removed, it cannot be recovered."_qs;
    const QString index = u"Once an index has been removed, it cannot be recovered."_qs;
    const QString database = u"Once a database has been removed, it cannot be recovered."_qs;
    const QString table = u"Once a table has been removed, it cannot be recovered."_qs;
    const QString viewText = u"Once a view has been removed, it cannot be recovered."_qs;
    const QString function = u"Once a function has been removed, it cannot be recovered."_qs;
    const QString sequence = u"Once a sequence has been removed, it cannot be recovered."_qs;
    const QString type = u"Once a type has been removed, it cannot be recovered."_qs;
    const auto ask = [](const char *kind, const char *name) {
        return u"Do you really want to drop the %1 '%2'?"_qs.arg(QString::fromUtf8(kind),
                                                                 QString::fromUtf8(name));
    };
    return {
        {"column", orders + QStringList{u"note"_qs}, ask("column", "note"), column,
         u"ALTER TABLE public.orders DROP COLUMN note"_qs, u"Column has been dropped"_qs,
         u"Column note has been dropped from orders"_qs},
        {"odd column", orders + QStringList{u"x\"y.z"_qs}, ask("column", "x\"y.z"), column,
         u"ALTER TABLE public.orders DROP COLUMN \"x\"\"y.z\""_qs, u"Column has been dropped"_qs,
         u"Column x\"y.z has been dropped from orders"_qs},
        {"table", orders, ask("table", "orders"), table, u"DROP TABLE public.orders;"_qs,
         u"Table has been dropped"_qs, u"The table public.orders has been dropped."_qs},
        {"odd table", at("Tables", "a;drop/**/table/**/bystander"),
         ask("table", "a;drop/**/table/**/bystander"), table,
         u"DROP TABLE public.\"a;drop/**/table/**/bystander\";"_qs, u"Table has been dropped"_qs,
         u"The table public.a;drop/**/table/**/bystander has been dropped."_qs},
        {"table named as a keyword", at("Tables", "select"), ask("table", "select"), table,
         u"DROP TABLE public.\"select\";"_qs, u"Table has been dropped"_qs,
         u"The table public.select has been dropped."_qs},
        {"view", at("Views", "cheap"), ask("view", "cheap"), viewText,
         u"DROP VIEW public.cheap;"_qs, u"View has been dropped"_qs,
         u"The view public.cheap has been dropped."_qs},
        {"odd view", at("Views", "v.w"), ask("view", "v.w"), viewText,
         u"DROP VIEW public.\"v.w\";"_qs, u"View has been dropped"_qs,
         u"The view public.v.w has been dropped."_qs},
        {"materialized view", at("Materialized Views", "totals"),
         ask("materialized view", "totals"),
         u"Once a materialized view has been removed, it cannot be recovered."_qs,
         u"DROP MATERIALIZED VIEW public.totals;"_qs, u"Materialized view has been dropped"_qs,
         u"The materialized view public.totals has been dropped."_qs},
        {"function", at("Functions", "total"), ask("function", "total"), function,
         u"DROP FUNCTION public.total(a integer, text);"_qs, u"Function has been dropped"_qs,
         u"Function total has been dropped"_qs},
        {"odd function", at("Functions", "f\"(;"), ask("function", "f\"(;"), function,
         u"DROP FUNCTION public.\"f\"\"(;\"();"_qs, u"Function has been dropped"_qs,
         u"Function f\"(; has been dropped"_qs},
        {"sequence", at("Sequences", "numbers"), ask("sequence", "numbers"), sequence,
         u"DROP SEQUENCE public.numbers"_qs, u"Sequence has been dropped"_qs,
         u"Sequence numbers has been dropped"_qs},
        {"odd sequence", at("Sequences", "s\"q"), ask("sequence", "s\"q"), sequence,
         u"DROP SEQUENCE public.\"s\"\"q\""_qs, u"Sequence has been dropped"_qs,
         u"Sequence s\"q has been dropped"_qs},
        {"type", at("Types", "mood"), ask("type", "mood"), type, u"DROP TYPE public.mood"_qs,
         u"Type has been dropped"_qs, u"Type mood has been dropped"_qs},
        {"odd type", at("Types", "t.T;"), ask("type", "t.T;"), type,
         u"DROP TYPE public.\"t.T;\""_qs, u"Type has been dropped"_qs,
         u"Type t.T; has been dropped"_qs},
        {"database",
         {u"victim"_qs},
         ask("database", "victim"),
         database,
         u"DROP DATABASE \"victim\";"_qs,
         u"Database has been dropped"_qs,
         u"Database 'victim' has been dropped"_qs},
        {"odd database",
         {u"d\"b; x"_qs},
         ask("database", "d\"b; x"),
         database,
         u"DROP DATABASE \"d\"\"b; x\";"_qs,
         u"Database has been dropped"_qs,
         u"Database 'd\"b; x' has been dropped"_qs},
        {"index", orders + QStringList{u"Indexes"_qs, u"orders_note"_qs},
         ask("index", "orders_note"), index, u"DROP INDEX public.orders_note"_qs,
         u"Index has been dropped"_qs, u"Index orders_note has been dropped"_qs},
        {"odd index", orders + QStringList{u"Indexes"_qs, u"i.j;"_qs}, ask("index", "i.j;"), index,
         u"DROP INDEX public.\"i.j;\""_qs, u"Index has been dropped"_qs,
         u"Index i.j; has been dropped"_qs},
    };
}

TEST_F(TreeActionsTest, DropsEveryKindOnlyAfterTheButton)
{
    QList<Kind> all = kinds();
    // Indexes go before their table's columns, and these before the table.
    std::rotate(all.begin(), all.end() - 2, all.end());
    for (const Kind &kind : all) {
        SCOPED_TRACE(kind.description);
        const Entry entry = node(kind.path);
        const QStringList before = existing();
        if (kind.path.size() == 1) {
            // An idle connection to it waits in the pool.
            node(kind.path + QStringList{u"Tables"_qs})
                ->loadEntriesAsync(DXDatabaseTreeEntry::Reload::Force);
            const auto tables = node(kind.path + QStringList{u"Tables"_qs});
            ASSERT_TRUE(DXWait::until([&] { return tables->childEntries() != nullptr; }));
        }

        chooseDrop(entry);
        {
            const OpenSheet sheet(main);
            EXPECT_EQ(sheet.question(), kind.question);
            EXPECT_TRUE(sheet.shows(kind.question));
            EXPECT_TRUE(sheet.shows(kind.information));
            EXPECT_EQ(sheet.script(), kind.script);
            sheet.click(u"Cancel"_qs);
            EXPECT_TRUE(sheet.closes());
        }
        EXPECT_EQ(existing(), before);
        EXPECT_EQ(node(kind.path), entry);
        EXPECT_THAT(told, testing::IsEmpty());

        chooseDrop(entry);
        const OpenSheet sheet(main);
        sheet.click(u"Drop"_qs);
        ASSERT_TRUE(sheet.closes()) << qPrintable(sheet.failureText());
        EXPECT_TRUE(isTold(kind.title, kind.text)) << qPrintable(told.join(u", "_qs));
        const QString name = kind.path.constLast();
        EXPECT_EQ(gone(before), name == u"orders"_qs
                                    ? (QStringList{u"id"_qs, name, u"orders_pkey"_qs})
                                    : QStringList(name));
        EXPECT_FALSE(entry->parent()->childEntries()->contains(entry));
        EXPECT_FALSE(view->currentlySelectedDatabaseTreeEntry());
        told.clear();
    }
    EXPECT_TRUE(existing().contains(u"bystander"_qs));
}

TEST_F(TreeActionsTest, DropsWhatASearchFoundFromEveryTree)
{
    const auto models = view->findChildren<DXDatabaseTreeModel *>();
    ASSERT_EQ(models[0]->roots().size(), 1);
    QSignalSpy searched(models[0], &DXDatabaseTreeModel::searchResultsUpdated);
    const QStringList functions{u"actions"_qs, u"Functions"_qs};
    const QStringList tables{u"actions"_qs, u"Tables"_qs};
    // Loaded, and so shown.
    const Entry overload = node(functions + QStringList{u"away.hit"_qs});
    const Entry column = node(tables + QStringList{u"away.hit"_qs, u"other"_qs});
    ASSERT_TRUE(DXWait::until([&] { return searched.count() == 1; }));
    view->findChild<QLineEdit *>()->setText(u"HIT"_qs);
    const auto hit = [this](const QString &image, const QString &arguments) {
        Entry found;
        const auto find = [&] {
            const auto roots = view->allRoots();
            const auto databases = roots.size() == 2 ? roots[1]->childEntries() : nullptr;
            if (!databases)
                return false;
            for (const auto &each : *databases->constFirst()->childEntries()) {
                if (each->imageName() == image && each->details() == arguments)
                    found = each;
            }
            return found != nullptr;
        };
        EXPECT_TRUE(DXWait::until(find)) << qPrintable(image);
        return found;
    };
    const auto drop = [this](const Entry &entry) {
        ASSERT_TRUE(entry);
        const Entry results = view->allRoots().constLast();
        chooseDrop(entry);
        const OpenSheet sheet(main);
        sheet.click(u"Drop"_qs);
        ASSERT_TRUE(sheet.closes()) << qPrintable(sheet.failureText());
        // What is left is found anew.
        EXPECT_TRUE(DXWait::until([&] { return view->allRoots().constLast() != results; }));
    };
    const auto overloads = [&] {
        QStringList names;
        for (const auto &each : *overload->parent()->childEntries()) {
            if (each->displayName() == u"away.hit")
                names += each->details();
        }
        return names;
    };
    ASSERT_EQ(overloads(), (QStringList{u"a integer"_qs, u"a text"_qs}));
    drop(hit(u"DatabaseTree-StoredProcedure"_qs, u"a text"_qs));
    EXPECT_EQ(overloads(), QStringList(u"a integer"_qs));

    Entry table = hit(u"DatabaseTree-Table"_qs, QString());
    ASSERT_TRUE(table);
    table->loadEntriesAsync(DXDatabaseTreeEntry::Reload::IfNeeded);
    ASSERT_TRUE(DXWait::until([&] { return table->childEntries() != nullptr; }));
    const Entry other = table->childEntries()->at(1);
    ASSERT_EQ(other->displayName(), u"other"_qs);
    drop(other);
    EXPECT_FALSE(column->parent()->childEntries()->contains(column));
    const Entry live = column->parent();
    table = hit(u"DatabaseTree-Table"_qs, QString());
    drop(table);
    EXPECT_FALSE(live->parent()->childEntries()->contains(live));
    const auto left = view->allRoots().constLast()->childEntries()->constFirst()->childEntries();
    ASSERT_EQ(left->size(), 1);
    EXPECT_EQ(left->constFirst()->details(), u"a integer"_qs);
}

TEST_F(TreeActionsTest, KeepsTheErrorInTheSheetAndTriesAgain)
{
    const Entry owned = node({u"actions"_qs, u"Tables"_qs, u"owned"_qs});
    chooseDrop(owned);
    const OpenSheet sheet(main);
    sheet.click(u"Drop"_qs);
    ASSERT_TRUE(sheet.fails());
    EXPECT_EQ(sheet.failureHeadline(), u"The statement failed; nothing was changed."_qs);
    EXPECT_TRUE(sheet.failureText().contains(u"view owners depends on table owned"_qs))
        << qPrintable(sheet.failureText());
    EXPECT_TRUE(sheet.failureText().contains(u"HINT:"_qs));
    EXPECT_EQ(node({u"actions"_qs, u"Tables"_qs, u"owned"_qs}), owned);
    EXPECT_THAT(told, testing::IsEmpty());

    PostgresCluster::shared().psql(u"DROP VIEW owners"_qs, u"actions"_qs);
    sheet.click(u"Drop"_qs);
    EXPECT_TRUE(sheet.closes());
    EXPECT_TRUE(
        isTold(u"Table has been dropped"_qs, u"The table public.owned has been dropped."_qs));
}

TEST_F(TreeActionsTest, CancelsADropThatWaits)
{
    const auto client =
        ServerAccess::connected(ServerAccess::record(PostgresCluster::shared(), u"actions"_qs));
    inBackground([&] {
        client->beginTransaction(nullptr);
        return client->executeNonQuery(u"LOCK TABLE locked"_qs, nullptr);
    });
    chooseDrop(node({u"actions"_qs, u"Tables"_qs, u"locked"_qs}));
    const OpenSheet sheet(main);
    sheet.click(u"Drop"_qs);
    ASSERT_TRUE(DXWait::until([&] { return sheet.shows(u"Dropping table 'locked'"_qs); }));
    ASSERT_TRUE(DXWait::until([&] {
        return PostgresCluster::shared()
            .psql(u"SELECT count(*) FROM pg_locks WHERE NOT granted"_qs)
            .contains(u'1');
    }));
    sheet.click(u"Cancel"_qs);
    ASSERT_TRUE(sheet.fails());
    EXPECT_EQ(sheet.failureHeadline(), u"Cancelled; nothing was changed."_qs);
    EXPECT_TRUE(existing().contains(u"locked"_qs));
    sheet.click(u"Cancel"_qs);
    EXPECT_TRUE(sheet.closes());
}

TEST_F(TreeActionsTest, LeavesADatabaseThatOthersUse)
{
    PostgresCluster::shared().createDatabase(u"busy"_qs);
    const auto client =
        ServerAccess::connected(ServerAccess::record(PostgresCluster::shared(), u"busy"_qs));
    chooseDrop(node({u"busy"_qs}));
    const OpenSheet sheet(main);
    sheet.click(u"Drop"_qs);
    ASSERT_TRUE(sheet.fails());
    EXPECT_TRUE(sheet.failureText().contains(u"being accessed by other users"_qs))
        << qPrintable(sheet.failureText());
    sheet.click(u"Cancel"_qs);
    EXPECT_TRUE(sheet.closes());
}

TEST_F(TreeActionsTest, OpensTabsInsteadOfDialogs)
{
    auto &actions = dynamic_cast<PostgresDatabaseTreeContextHelper &>(*helper);
    actions.newStoredProcedure();
    EXPECT_THAT(window.asked, testing::IsEmpty());

    const Entry database = node({u"actions"_qs});
    const auto trees = view->findChildren<QTreeView *>();
    QTreeView *const tree = *std::find_if(trees.begin(), trees.end(),
                                          [](const auto *each) { return each->isVisible(); });
    const auto *const model = static_cast<const DXDatabaseTreeModel *>(tree->model());
    ASSERT_TRUE(DXWait::until([&] { return model->indexOf(*database).isValid(); }));
    tree->setCurrentIndex(model->indexOf(*database));
    actions.newStoredProcedure();
    EXPECT_EQ(window.asked, QStringList(u"load actions"_qs));
    const auto delivery =
        inBackground([&] { return ScriptReceiver::load(*window.lastLoader, *details); });
    EXPECT_TRUE(delivery.script.startsWith(u"CREATE OR REPLACE PROCEDURE"_qs));

    const Entry table = node({u"actions"_qs, u"Tables"_qs, u"bystander"_qs});
    actions.alterTable(*table);
    EXPECT_EQ(window.asked.constLast(), u"alter actions public.bystander"_qs);
    actions.alterTable(*database);
    EXPECT_EQ(window.asked.size(), 2);
    chooseDrop(table);
    const OpenSheet sheet(main);
    sheet.click(u"Open in query tab"_qs);
    EXPECT_TRUE(sheet.closes());
    EXPECT_EQ(window.asked.constLast(), u"tab actions DROP TABLE public.bystander;"_qs);
}

TEST_F(TreeActionsTest, DisablesWhatIsNotOfferedYet)
{
    QStringList disabled;
    const auto menu = view->createMenu(*node({u"actions"_qs, u"Tables"_qs, u"bystander"_qs}));
    for (const QAction *action : menu->actions()) {
        if (!action->isEnabled() && !action->isSeparator())
            disabled += action->text();
    }
    EXPECT_EQ(disabled,
              (QStringList{u"Alter table"_qs, u"Rename table"_qs, u"Insert"_qs, u"Import"_qs}));
}

} // namespace
