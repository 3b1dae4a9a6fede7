// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/desktop/DesktopTest.h"
#include "desktop/Connections.h"
#include "desktop/MainWindow.h"
#include "desktop/TableExports.h"
#include "desktop/documents/Documents.h"
#include "support/DXWait.h"
#include "support/Widgets.h"
#include "ui/DXFailureList.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXQuerySession.h"
#include "ui/query/DXQueryTab.h"
#include "ui/tree/DXDatabaseTreeModel.h"
#include "ui/tree/DXDatabaseTreeView.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

#include <algorithm>

namespace
{

/// The catalogue at the side of the window, of a table shop.browsed (x, y).
class TreeSideTest : public DesktopTest
{
protected:
    TreeSideTest()
    {
        PostgresCluster::shared().psql(
            u"DROP SCHEMA IF EXISTS shop CASCADE; CREATE SCHEMA shop; "
            "CREATE TABLE shop.browsed (x int, y int); CREATE TABLE shop.other ()"_qs);
        open().openArguments({uri(PostgresCluster::shared())});
        EXPECT_TRUE(DXWait::until([this] { return window().documents().current() != nullptr; }));
    }

    /// Follows names from the top of the tree that is shown, unfolding each; waits for them.
    QModelIndex find(const QStringList &names) const
    {
        QModelIndex index;
        EXPECT_TRUE(DXWait::until([&] {
            index = DesktopTest::find(names);
            return index.isValid();
        })) << qPrintable(names.join(u'/'));
        return index;
    }
    void search(const QString &text) const
    {
        auto *const field = window().tree().findChild<QLineEdit *>();
        field->setFocus();
        QTest::keySequence(field, QKeySequence::SelectAll);
        QTest::keyClicks(field, text);
    }
    int loading() const
    {
        return static_cast<const DXDatabaseTreeModel &>(*tree().model()).loadingCount();
    }

    const QString server = PostgresCluster::shared().socketFolder();
};

TEST_F(TreeSideTest, unfoldsWhatASearchFound)
{
    find({server, u"postgres"_qs});
    search(u"BROWSED"_qs);
    // The hits are seen without unfolding what they are in.
    EXPECT_TRUE(DXWait::until([this] {
        const QModelIndex database = tree().model()->index(0, 0, tree().model()->index(0, 0));
        return tree().accessibleName() == u"Search results" && tree().isExpanded(database)
               && tree().model()->rowCount(database) > 0;
    }));
    find({server, u"postgres"_qs, u"shop.browsed"_qs, u"y"_qs});
    EXPECT_TRUE(DXWait::until([this] { return loading() == 0; }));
    search(u"nothing at all"_qs);
    EXPECT_TRUE(DXWait::until([this] {
        const QList<QLabel *> labels = window().tree().findChildren<QLabel *>();
        return std::ranges::any_of(labels, [](const QLabel *label) {
            return label->isVisible() && label->text().contains(u"\"nothing at all\"");
        });
    }));
    // What another program made meanwhile is there once it is asked for.
    PostgresCluster::shared().psql(u"CREATE TABLE shop.\"nothing at all\" (z int)"_qs);
    press(Qt::Key_R, Qt::ControlModifier);
    find({server, u"postgres"_qs, u"shop.nothing at all"_qs, u"z"_qs});
}

TEST_F(TreeSideTest, tellsOfARefreshThatFailed)
{
    PostgresCluster own;
    open().openArguments({uri(own)});
    const QModelIndex root = find({own.socketFolder()});
    find({own.socketFolder(), u"postgres"_qs});
    own.stop();
    tree().setCurrentIndex(root);
    press(Qt::Key_R, Qt::ControlModifier);
    const DXFailureList &failures = window().tree().failures();
    EXPECT_TRUE(DXWait::until([&] { return !failures.isEmpty(); }));
    EXPECT_TRUE(failures.headlines().constFirst().contains(own.socketFolder()))
        << qPrintable(failures.headlines().constFirst());
    EXPECT_TRUE(DesktopTest::find({own.socketFolder(), u"postgres"_qs}).isValid());
}

TEST_F(TreeSideTest, disconnectsTabsAndTreeOnceThatIsAgreed)
{
    const auto disconnect = [this] { window().actions()[ActionSet::Id::Disconnect]->trigger(); };
    const auto sessions = [] {
        return PostgresCluster::shared()
            .psql(u"SELECT count(*) FROM pg_stat_activity WHERE backend_type = 'client backend' "
                  "AND pid <> pg_backend_pid()"_qs)
            .trimmed()
            .toInt();
    };
    find({server, u"postgres"_qs, u"Tables"_qs, u"shop.browsed"_qs, u"y"_qs});
    ASSERT_TRUE(run(u"BEGIN; DROP TABLE shop.browsed"_qs));
    DXQueryTab &inTransaction = tab();
    press(Qt::Key_T, Qt::ControlModifier);
    ASSERT_TRUE(start(PostgresCluster::shared(), u"SELECT pg_sleep(600)"_qs));

    disconnect();
    auto *question = Widgets::opened<QMessageBox>();
    EXPECT_TRUE(question->text().contains(u"open in \"Query 1\"")) << qPrintable(question->text());
    EXPECT_TRUE(question->text().contains(u"running in \"Query 2\""));
    Widgets::click<QPushButton>(question, u"Cancel"_qs);
    EXPECT_TRUE(inTransaction.session().isInTransaction());
    EXPECT_TRUE(tab().session().isBusy());
    EXPECT_EQ(window().connections().open().size(), 1);

    disconnect();
    Widgets::click<QPushButton>(Widgets::opened<QMessageBox>(), u"Roll back and disconnect"_qs);
    EXPECT_TRUE(DXWait::until([&] { return sessions() == 0; })) << sessions();
    EXPECT_FALSE(inTransaction.session().isInTransaction());
    EXPECT_FALSE(tab().session().isBusy());
    EXPECT_TRUE(window().connections().open().isEmpty());
    EXPECT_EQ(tree().model()->rowCount(), 0);
    // The texts stay, and run on a new connection.
    EXPECT_EQ(inTransaction.editor().text(), u"BEGIN; DROP TABLE shop.browsed"_qs);
    ASSERT_TRUE(run(u"SELECT count(*) FROM shop.browsed"_qs));
    EXPECT_EQ(cells(0), u"0"_qs) << qPrintable(messages());
    EXPECT_FALSE(messages().contains(u"lost")) << qPrintable(messages());
}

/// Files that tables are written into.
class TableExportTest : public TreeSideTest
{
protected:
    TableExportTest()
    {
        PostgresCluster::shared().psql(
            u"CREATE VIEW shop.odd AS SELECT 'a \"b\", c' AS \"x,y\", '' AS \"empty\", "
            "NULL AS \"none\", 1.50 AS \"number\", E'two\\nlines' AS \"lines\" "
            "UNION ALL SELECT 'ü', ' ', 'z', -1, '' ORDER BY 4 DESC; "
            "CREATE VIEW shop.slow AS SELECT i, CASE WHEN i = 100000 THEN pg_sleep(600)::text END "
            "AS nap "
            "FROM generate_series(1, 200000) AS i"_qs);
        QFile file(path);
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write("before") > 0);
    }

    TableExports &exports() const { return *window().findChild<TableExports *>(); }
    void start(const QString &table) const
    {
        exports().start(table, window().connections().open().constFirst().details, path);
    }
    QString written() const
    {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
    bool tellsOfSomeRows() const
    {
        return DXWait::until([this] {
            const auto *const label = exports().findChild<QLabel *>();
            return label && label->isVisible() && label->text().startsWith(u"Exporting shop.slow")
                   && !label->text().contains(u": 0 rows");
        });
    }
    static int sleepers()
    {
        return PostgresCluster::shared()
            .psql(u"SELECT count(*) FROM pg_stat_activity WHERE query LIKE '%shop.slow%' "
                  "AND state = 'active' AND pid <> pg_backend_pid()"_qs)
            .trimmed()
            .toInt();
    }

    const QString path = home() + u"/table.csv"_qs;
};

TEST_F(TableExportTest, writesWhatOtherProgramsReadAsTheSame)
{
    start(u"shop.odd"_qs);
    ASSERT_TRUE(DXWait::until([this] { return !exports().isBusy(); }));
    EXPECT_EQ(written(), u"\"x,y\",empty,none,number,lines\n"
                         "\"a \"\"b\"\", c\",\"\",,1.50,\"two\nlines\"\n"
                         "ü, ,z,-1,\"\"\n"_qs);
    const QString told = u"2 rows of shop.odd were exported to %1."_qs.arg(path);
    EXPECT_TRUE(DXWait::until([&] { return statusMessage() == told; }))
        << qPrintable(statusMessage());
}

TEST_F(TableExportTest, leavesTheFileWhenItIsCancelled)
{
    start(u"shop.slow"_qs);
    ASSERT_TRUE(tellsOfSomeRows());
    Widgets::click<QPushButton>(&exports(), u"Cancel"_qs);
    EXPECT_TRUE(DXWait::until([this] { return !exports().isBusy(); }));
    EXPECT_FALSE(exports().isVisible());
    EXPECT_TRUE(statusMessage().contains(u"shop.slow was cancelled"))
        << qPrintable(statusMessage());
    EXPECT_TRUE(DXWait::until([] { return sleepers() == 0; }));
    EXPECT_EQ(written(), u"before"_qs);
    EXPECT_TRUE(failures().isEmpty()) << qPrintable(failures().join(u'\n'));
}

TEST_F(TableExportTest, saysWhyItFailed)
{
    start(u"shop.nowhere"_qs);
    ASSERT_TRUE(DXWait::until([this] { return !failures().isEmpty(); }));
    EXPECT_TRUE(failures().constFirst().contains(path)) << qPrintable(failures().constFirst());
    EXPECT_EQ(written(), u"before"_qs);
    // What works clears it away.
    start(u"shop.odd"_qs);
    EXPECT_TRUE(DXWait::until([this] { return failures().isEmpty(); }));
}

TEST_F(TableExportTest, isAskedAboutBeforeTheWindowCloses)
{
    start(u"shop.slow"_qs);
    ASSERT_TRUE(tellsOfSomeRows());
    EXPECT_FALSE(window().close());
    auto *const question = Widgets::opened<QMessageBox>();
    EXPECT_TRUE(question->text().contains(u"shop.slow")) << qPrintable(question->text());
    Widgets::click<QPushButton>(question, u"Quit anyway"_qs);
    EXPECT_TRUE(DXWait::until([this] { return !window().isVisible(); }));
    closeWindow();
    EXPECT_TRUE(DXWait::until([] { return sleepers() == 0; }));
    EXPECT_EQ(written(), u"before"_qs);
}

} // namespace
