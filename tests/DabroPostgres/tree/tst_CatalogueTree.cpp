// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/scripts/ScriptReceiver.h"
#include "DabroPostgres/tree/CatalogueTree.h"
#include "cli/CliText.h"
#include "driver/PostgresConnectionHelper.h"
#include "support/Background.h"
#include "support/PrintQt.h"
#include "support/TreeWindow.h"
#include "tree/ColumnDetailsTableCellView.h"

#include <QFile>

#include <gmock/gmock.h>

namespace
{

QString readFile(const QString &name)
{
    QFile file(QStringLiteral(DX_SQL_FOLDER) + u'/' + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    return QString::fromUtf8(file.readAll());
}

// What a text should be is in a file, which shows best what a change does.
void expectAsIn(const QString &name, const QString &actual)
{
    const QString expected = readFile(name);
    EXPECT_EQ(actual.split(u'\n'), expected.split(u'\n'));
    if (actual == expected)
        return;
    QFile file(QStringLiteral(DX_ACTUAL_FOLDER) + u'/' + name.section(u'/', -1));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(actual.toUtf8());
    ADD_FAILURE() << "what it was is in " << file.fileName().toStdString();
}

// Notes, beside what a window does, what has dialogs.
class Actions final : public PostgresDatabaseTreeActions
{
public:
    explicit Actions(TreeWindow &window)
        : PostgresDatabaseTreeActions(window)
        , m_window(window)
    { }

    bool canImportInto(const DXDatabaseTreeEntry &) const override { return true; }
    bool isCapableOf(Capability, const Entry &) const override { return true; }
    void addNewTable(const Entry &entry, const QString &query) override
    {
        note(u"new table: "_qs + query, entry);
    }
    void alterTable(const Entry &entry) override { note(u"alter"_qs, entry); }
    void renameTable(const Entry &entry) override { note(u"rename"_qs, entry); }
    void displayInsertDialog(const Entry &entry) override { note(u"insert"_qs, entry); }
    void exportDatabaseAsSQLite(const Entry &entry) override { note(u"export"_qs, entry); }
    void confirmDropDatabase(const Entry &entry) override { note(u"drop database"_qs, entry); }
    void confirmDropTable(const Entry &entry) override { note(u"drop table"_qs, entry); }
    void confirmDropColumn(const Entry &entry) override { note(u"drop column"_qs, entry); }
    void confirmDropFunction(const Entry &entry) override { note(u"drop function"_qs, entry); }
    void confirmDropSequence(const Entry &entry) override { note(u"drop sequence"_qs, entry); }
    void confirmDropType(const Entry &entry) override { note(u"drop type"_qs, entry); }
    void confirmDropIndex(const Entry &entry) override { note(u"drop index"_qs, entry); }

private:
    void note(const QString &what, const Entry &entry)
    {
        m_window.asked += u"[%1] %2"_qs.arg(entry.displayName(), what);
    }

    TreeWindow &m_window;
};

class CatalogueTreeTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        PostgresCluster::shared().createDatabase(u"tree"_qs);
        PostgresCluster::shared().psql(readFile(u"queries/objects.sql"_qs), u"tree"_qs);
    }
    void TearDown() override
    {
        PostgresConnectionHelper::sharedInstance().setGroupBySchemaForDBC(true, *details);
    }

    // What choosing asks the window for, and how the script begins that a loader makes for it:
    // further on servers differ.
    QString chosen(const DXMenu::Action &choose)
    {
        window.asked.clear();
        window.lastLoader.reset();
        choose();
        QString asked = window.asked.join(u" + ").section(u'\n', 0, 0);
        if (window.lastLoader) {
            const auto delivery =
                inBackground([&] { return ScriptReceiver::load(*window.lastLoader, *details); });
            asked += u": "_qs + CliText::printable(delivery.script.left(45));
        }
        return asked;
    }
    QString menuText(const std::vector<DXMenu::Item> &items, qsizetype indent)
    {
        QString text;
        for (const DXMenu::Item &item : items) {
            text += QString(indent, u' ') + (item.isSeparator() ? u"--"_qs : item.title);
            // What these do is the same everywhere and tested with the host.
            const bool isHosts = item.title == u"Refresh"_qs || item.title == u"Clipboard"_qs
                                 || item.title == u"File…"_qs;
            if (item.action && !isHosts)
                text += u" > "_qs + chosen(item.action);
            text += u'\n' + menuText(item.submenu, indent + 2);
        }
        return text;
    }

    const ServerAccess::Record details =
        ServerAccess::record(PostgresCluster::shared(), u"tree"_qs);
    CatalogueTree tree{details};
    TreeWindow window;
    const std::shared_ptr<Actions> actions = std::make_shared<Actions>(window);
};

TEST_F(CatalogueTreeTest, ShowsWhatADatabaseHolds)
{
    for (const bool isGrouped : {true, false}) {
        PostgresConnectionHelper::sharedInstance().setGroupBySchemaForDBC(isGrouped, *details);
        CatalogueTree fresh(details);
        const auto database = fresh.node({u"tree"_qs});
        fresh.load(database, isGrouped ? 10 : 3);
        expectAsIn(isGrouped ? u"tree/by-kind.tree"_qs : u"tree/by-schema.tree"_qs,
                   CatalogueTree::text(database));
    }
}

TEST_F(CatalogueTreeTest, OffersMenusKeysAndTextsToDrag)
{
    tree.root()->setContextHelper(actions);
    const QString orders = u"shop.orders"_qs;
    const QList<QStringList> nodes = {
        {},
        {u"Tables"_qs},
        {u"Tables"_qs, orders},
        {u"Tables"_qs, orders, u"id"_qs},
        {u"Tables"_qs, orders, u"id"_qs, u"shop.orders_id_seq"_qs},
        {u"Tables"_qs, orders, u"Indexes"_qs},
        {u"Tables"_qs, orders, u"Indexes"_qs, u"orders_hash"_qs},
        {u"Tables"_qs, orders, u"Triggers"_qs},
        {u"Tables"_qs, orders, u"Triggers"_qs, u"transition"_qs},
        {u"Views"_qs},
        {u"Views"_qs, u"happy"_qs},
        {u"Views"_qs, u"happy"_qs, u"one"_qs},
        {u"Materialized Views"_qs},
        {u"Materialized Views"_qs, u"shop.totals"_qs},
        {u"Functions"_qs},
        {u"Functions"_qs, u"f"_qs},
        {u"Types"_qs},
        {u"Types"_qs, u"mood"_qs},
        {u"Types"_qs, u"shop.address"_qs},
        {u"Sequences"_qs},
        {u"Sequences"_qs, u"shop.numbers"_qs},
    };
    QString text = u"== the server\n"_qs + menuText(tree.root()->menu().items(), 0);
    for (const QStringList &names : nodes) {
        const auto entry = tree.node(QStringList(u"tree"_qs) + names);
        text += u"== "_qs + entry->displayName() + u", dragged: "_qs + entry->dragDropString();
        for (const auto &[title, key] :
             {std::pair(u"double click"_qs, &DXDatabaseTreeEntry::onDoubleClicked),
              std::pair(u"right"_qs, &DXDatabaseTreeEntry::cmdRight)}) {
            const QString asked = chosen([&entry, key = key] { (*entry.*key)(); });
            if (!asked.isEmpty())
                text += u"\n"_qs + title + u" > "_qs + asked;
        }
        text += u'\n' + menuText(entry->menu().items(), 0);
    }
    expectAsIn(u"tree/menus.txt"_qs, text);

    const auto odd = tree.node({u"tree"_qs, u"Tables"_qs, u"Odd Schema.Odd Table"_qs});
    ColumnDetailsTableCellView cell;
    tree.node({u"tree"_qs, u"Functions"_qs, u"shop.total"_qs})->prepareCell(cell);
    EXPECT_EQ(cell.columnNameTextField + cell.columnDetailsTextField, u"total(integer)"_qs);
    tree.node({u"tree"_qs, u"Functions"_qs, u"shop.touch"_qs})->prepareCell(cell);
    EXPECT_EQ(cell.columnDetailsTextField, u"no overload"_qs);
    EXPECT_EQ(odd->dragDropString(), u"\"Odd Schema\".\"Odd Table\""_qs);
}

} // namespace
