// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/desktop/DesktopTest.h"
#include "client/DabroDBC.h"
#include "desktop/MainWindow.h"
#include "desktop/documents/Documents.h"
#include "support/DXWait.h"
#include "support/Widgets.h"
#include "ui/DXFailureList.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXMessageView.h"
#include "ui/query/DXQuerySession.h"
#include "ui/query/DXQueryTab.h"
#include "ui/results/DXResultGrid.h"
#include "ui/results/DXResultModel.h"
#include "ui/results/DXResultOutput.h"
#include "ui/results/DXResultPage.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTcpServer>

#include <csignal>
#include <functional>
#include <sys/types.h>

namespace
{

using Id = ActionSet::Id;
using testing::HasSubstr;

class QueryTab : public DesktopTest
{
protected:
    QueryTab()
    {
        open().openArguments({uri(PostgresCluster::shared())});
        EXPECT_TRUE(DXWait::until([this] { return window().documents().current() != nullptr; }));
    }
};

TEST_F(QueryTab, givesEachStatementItsGridAndMessage)
{
    ASSERT_TRUE(run(u"SELECT 1 AS a, NULL AS b;\nCREATE TEMP TABLE t (i int);\n"
                    "INSERT INTO t SELECT generate_series(1, 3);\nSELECT * FROM t"_qs));
    ASSERT_EQ(tab().resultPages().size(), 2);
    EXPECT_EQ(cells(0), u"1|"_qs);
    EXPECT_EQ(cells(1), u"1\n2\n3"_qs);
    EXPECT_EQ(messages().count(u"Command completed successfully."), 4);
    EXPECT_THAT(messages().toStdString(), HasSubstr("Line 3: Command completed successfully. (3 "
                                                    "rows affected)."));
    EXPECT_TRUE(tab().currentResultPage());
    EXPECT_THAT(tab().summary().toStdString(), HasSubstr("4 rows"));
    EXPECT_THAT(statusText().toStdString(), HasSubstr("PostgreSQL 1"));
    press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(tab().currentResultPage(), tab().resultPages()[1]);
}

TEST_F(QueryTab, runsTheStatementAtTheCaretOrTheSelection)
{
    tab().editor().setText(u"SELECT 'one';\nSELECT 'two';\nSELECT 'three'"_qs);
    tab().editor().setCaretPosition(20);
    press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(becomesIdle());
    EXPECT_EQ(cells(0), u"two"_qs);
    tab().editor().setSelection(2, 0, 2, 14);
    press(Qt::Key_F5, Qt::NoModifier);
    ASSERT_TRUE(becomesIdle());
    ASSERT_EQ(tab().resultPages().size(), 1);
    EXPECT_EQ(cells(0), u"three"_qs);
}

TEST_F(QueryTab, tellsAnErrorOnceAndMarksItsPlace)
{
    ASSERT_TRUE(run(u"SELECT 1;\nSELECT nothere FROM pg_class;\nSELECT 3"_qs));
    EXPECT_EQ(messages().count(u"nothere"), 1) << qPrintable(messages());
    EXPECT_FALSE(messages().contains(u"LINE "));
    EXPECT_FALSE(tab().currentResultPage());
    ASSERT_EQ(tab().resultPages().size(), 1);
    // Indicators are Scintilla's; the mark stands under the name and nowhere else.
    const auto marked = [this](int line, int column) {
        const long at = tab().editor().positionFromLineIndex(line, column);
        return tab().editor().SendScintilla(QsciScintilla::SCI_INDICATORALLONFOR, at) != 0;
    };
    EXPECT_TRUE(marked(1, 7));
    EXPECT_FALSE(marked(1, 20));
    EXPECT_FALSE(marked(0, 7));
}

TEST_F(QueryTab, showsNoticesAsTheyCome)
{
    ASSERT_TRUE(run(u"DO $$ BEGIN RAISE NOTICE '<b>halfway</b>'; END $$"_qs));
    EXPECT_THAT(messages().toStdString(), HasSubstr("NOTICE:  <b>halfway</b>"));
}

TEST_F(QueryTab, cancelsWhatTheServerComputes)
{
    ASSERT_TRUE(start(PostgresCluster::shared(), u"SELECT pg_sleep(600)"_qs));
    press(Qt::Key_Period, Qt::ControlModifier);
    ASSERT_TRUE(becomesIdle());
    EXPECT_THAT(messages().toStdString(), HasSubstr("canceling statement due to user request"));
    ASSERT_TRUE(run(u"SELECT 'well'"_qs));
    EXPECT_EQ(cells(0), u"well"_qs);
}

TEST_F(QueryTab, staysUsableWhileTheServerIsTalkative)
{
    ASSERT_TRUE(
        run(u"DO $$ BEGIN FOR i IN 1..200000 LOOP RAISE NOTICE '%', i; END LOOP; END $$"_qs));
    const QStringList lines = messages().split(u'\n');
    EXPECT_EQ(lines.size(), 10001);
    EXPECT_EQ(QString(lines.constFirst()).remove(u','),
              u"190001 earlier messages were left out."_qs);
    EXPECT_THAT(lines.at(lines.size() - 2).toStdString(), HasSubstr("NOTICE:  200000"));
    EXPECT_THAT(lines.constLast().toStdString(), HasSubstr("completed successfully"));

    tab().editor().setText(u"DO $$ BEGIN LOOP RAISE NOTICE 'again'; END LOOP; END $$"_qs);
    tab().runAll();
    ASSERT_TRUE(DXWait::until([this] { return messages().contains(u"again"); }));
    press(Qt::Key_Period, Qt::ControlModifier);
    ASSERT_TRUE(becomesIdle());
    EXPECT_THAT(messages().toStdString(), HasSubstr("canceling statement due to user request"));
}

TEST_F(QueryTab, cancelsBeforeTheServerKnowsWithoutLosingTheTransaction)
{
    ASSERT_TRUE(run(u"BEGIN"_qs));
    tab().editor().setText(u"SELECT pg_sleep(600)"_qs);
    tab().runAll();
    tab().cancel();
    ASSERT_TRUE(becomesIdle());
    EXPECT_TRUE(tab().session().isInTransaction()) << qPrintable(messages());
    EXPECT_THAT(messages().toLower().toStdString(), HasSubstr("cancel"));
    EXPECT_FALSE(messages().contains(u"Connecting"));
    tab().session().rollback();
    ASSERT_TRUE(becomesIdle());
}

TEST_F(QueryTab, givesUpAServerThatDoesNotIntroduceItself)
{
    QTcpServer mute;
    ASSERT_TRUE(mute.listen(QHostAddress::LocalHost));
    const auto details = tab().details()->copy();
    details->setHost(u"127.0.0.1"_qs);
    details->setPort(mute.serverPort());
    ASSERT_TRUE(tab().setDetails(details));
    tab().editor().setText(u"SELECT 1"_qs);
    tab().runAll();
    ASSERT_TRUE(DXWait::until([&mute] { return mute.hasPendingConnections(); }));
    EXPECT_EQ(tab().session().state(), DXQuerySession::State::Connecting);
    tab().cancel();
    EXPECT_FALSE(tab().session().isBusy());
    EXPECT_THAT(messages().toStdString(), HasSubstr("Connecting was cancelled."));
}

TEST_F(QueryTab, tellsWhatAFailureUndid)
{
    PostgresCluster::shared().psql(u"DROP TABLE IF EXISTS undone; CREATE TABLE undone (i int)"_qs);
    const char *const all = "Nothing of this run was kept";
    struct Case
    {
        const char *text;
        const char *told;
        const char *rows;
    };
    const Case cases[] = {
        {"INSERT INTO undone VALUES (1); SELECT 1 / 0; SELECT 2", all, "0"},
        {"INSERT INTO undone VALUES (1);\nCOMMIT; INSERT INTO undone VALUES (2);\nSELECT 1 / 0",
         "Nothing from line 2 on was kept", "1"},
        {"BEGIN; INSERT INTO undone VALUES (3); COMMIT; SELECT 1 / 0", "", "2"},
        {"SELECT 1 / 0; INSERT INTO undone VALUES (4)", "", "2"},
        {"INSERT INTO undone VALUES (5); COPY undone TO STDOUT", "", "3"},
        {"INSERT INTO undone VALUES (6); VACUUM", all, "3"},
        // What is undone here, the transaction that is still open tells.
        {"INSERT INTO undone VALUES (7); BEGIN; SELECT 1 / 0", "", "3"},
    };
    for (const Case &each : cases) {
        SCOPED_TRACE(each.text);
        ASSERT_TRUE(run(QString::fromUtf8(each.text)));
        EXPECT_EQ(messages().count(u"was kept"), *each.told ? 1 : 0) << qPrintable(messages());
        EXPECT_THAT(messages().toStdString(), HasSubstr(each.told));
        EXPECT_EQ(PostgresCluster::shared().psql(u"SELECT count(*) FROM undone"_qs),
                  QString::fromUtf8(each.rows));
    }
    // Nor is it told again.
    tab().session().commit();
    ASSERT_TRUE(becomesIdle());
    EXPECT_THAT(messages().toStdString(), HasSubstr("rolled back instead of committed"));
    EXPECT_FALSE(messages().contains(u"was kept"));
}

TEST_F(QueryTab, committingManuallyKeepsNothingBehindTheUsersBack)
{
    const PostgresCluster &cluster = PostgresCluster::shared();
    cluster.psql(u"DROP TABLE IF EXISTS kept; CREATE TABLE kept (i int);"
                 "INSERT INTO kept VALUES (1), (2)"_qs);
    tab().session().setCommitsManually(true);
    ASSERT_TRUE(run(u"INSERT INTO kept VALUES (3);\nCOMMIT;\nDELETE FROM kept;\n"
                    "SELECT count(*) FROM kept"_qs));
    EXPECT_EQ(cells(0), u"0"_qs) << qPrintable(messages());
    EXPECT_THAT(messages().toStdString(), HasSubstr("Line 3: Command completed successfully. (3"));
    EXPECT_TRUE(tab().session().isInTransaction());
    tab().session().rollback();
    ASSERT_TRUE(becomesIdle());
    EXPECT_EQ(cluster.psql(u"SELECT count(*) FROM kept"_qs), u"3"_qs);

    ASSERT_TRUE(run(u"DELETE FROM kept;\nVACUUM;\nCOMMIT"_qs));
    EXPECT_THAT(messages().toStdString(), HasSubstr("cannot run inside a transaction block"));
    EXPECT_FALSE(messages().contains(u"Line 3"));
    EXPECT_TRUE(tab().session().isInTransaction());
    tab().session().rollback();
    ASSERT_TRUE(becomesIdle());
    EXPECT_EQ(cluster.psql(u"SELECT count(*) FROM kept"_qs), u"3"_qs);
}

TEST_F(QueryTab, keepsItsTransactionAndShowsIt)
{
    QAction *const commit = window().actions()[Id::Commit];
    ASSERT_TRUE(run(u"CREATE TEMP TABLE t (i int)"_qs));
    EXPECT_FALSE(commit->isEnabled());
    window().actions()[Id::ManualCommit]->setChecked(true);
    ASSERT_TRUE(run(u"INSERT INTO t VALUES (1)"_qs));
    EXPECT_TRUE(commit->isEnabled());
    EXPECT_THAT(statusText().toStdString(), HasSubstr("in transaction 0:0"));
    window().actions()[Id::RollBack]->trigger();
    ASSERT_TRUE(becomesIdle());
    EXPECT_FALSE(commit->isEnabled());
    ASSERT_TRUE(run(u"SELECT count(*) FROM t"_qs));
    EXPECT_EQ(cells(0), u"0"_qs);
    commit->trigger();
    ASSERT_TRUE(becomesIdle());
    EXPECT_FALSE(tab().session().isInTransaction());
    // A tab with an open transaction is not closed without a word.
    ASSERT_TRUE(run(u"INSERT INTO t VALUES (2)"_qs));
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_TRUE(window().documents().current());
    QTest::keyClick(Widgets::opened<QMessageBox>(), Qt::Key_Escape);
    EXPECT_FALSE(window().close());
    EXPECT_TRUE(tab().session().isInTransaction());
    Widgets::click<QPushButton>(Widgets::opened<QMessageBox>(), u"Quit anyway"_qs);
    EXPECT_TRUE(DXWait::until([this] { return !window().isVisible(); }));
}

TEST_F(QueryTab, saysThatItsTransactionHasFailed)
{
    const ActionSet &actions = window().actions();
    ASSERT_TRUE(run(u"BEGIN; SAVEPOINT s"_qs));
    EXPECT_TRUE(failures().isEmpty());
    ASSERT_TRUE(run(u"SELECT 1 / 0"_qs));
    EXPECT_THAT(statusText().toStdString(), HasSubstr("in failed transaction 0:0"));
    EXPECT_FALSE(actions[Id::Commit]->isEnabled());
    EXPECT_TRUE(actions[Id::RollBack]->isEnabled());
    EXPECT_THAT(failures().join(u'\n').toStdString(), HasSubstr("The transaction has failed."));

    ASSERT_TRUE(run(u"ROLLBACK TO s"_qs));
    EXPECT_THAT(statusText().toStdString(), HasSubstr("in transaction 0:0"));
    EXPECT_TRUE(actions[Id::Commit]->isEnabled());
    EXPECT_TRUE(failures().isEmpty());

    // What was put away is said again when it is the reason.
    ASSERT_TRUE(run(u"SELECT 1 / 0"_qs));
    tab().failures().focusNewest();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_TRUE(failures().isEmpty());
    ASSERT_TRUE(run(u"SELECT 2"_qs));
    EXPECT_EQ(failures().size(), 1);
    Widgets::click<QPushButton>(&tab().failures(), u"Roll back"_qs);
    ASSERT_TRUE(becomesIdle());
    EXPECT_FALSE(tab().session().isInTransaction());
    EXPECT_FALSE(statusText().contains(u"transaction"));
    EXPECT_TRUE(failures().isEmpty());

    // Nor does it outlive its connection.
    ASSERT_TRUE(run(u"BEGIN; SELECT 1 / 0"_qs));
    tab().session().leave();
    EXPECT_TRUE(failures().isEmpty());
}

TEST_F(QueryTab, saysThatATypedCommitWasNone)
{
    const QString told = u"The transaction was rolled back instead"_qs;
    ASSERT_TRUE(run(u"BEGIN; SELECT 1 / 0"_qs));
    ASSERT_TRUE(run(u"COMMIT;\nSELECT 'after'"_qs));
    EXPECT_EQ(messages().count(told), 1) << qPrintable(messages());
    EXPECT_TRUE(messages().contains(u"Command completed successfully."));
    EXPECT_EQ(cells(0), u"after"_qs);
    // Else it would stand behind the grid.
    EXPECT_FALSE(tab().currentResultPage());
    ASSERT_TRUE(run(u"BEGIN; SELECT 1; COMMIT"_qs));
    EXPECT_FALSE(messages().contains(told));
    EXPECT_TRUE(tab().currentResultPage());

    tab().session().setCommitsManually(true);
    ASSERT_TRUE(run(u"SELECT 1 / 0"_qs));
    ASSERT_TRUE(run(u"END"_qs));
    EXPECT_EQ(messages().count(told), 1) << qPrintable(messages());
}

TEST_F(QueryTab, viewsAndSavesWhatArrived)
{
    ASSERT_TRUE(run(u"SELECT i AS n, 'a,\"' || i AS t FROM generate_series(1, 12345) AS i"_qs));
    DXResultPage &page = *tab().resultPages()[0];
    EXPECT_EQ(page.rowCount(), 12345);
    EXPECT_TRUE(DXWait::until([&] { return page.grid()->resultModel().rowCount() == 12345; }));
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"rows.csv"_qs);
    const QSignalSpy saved(&tab().output(), &DXResultOutput::ended);
    page.writeCsv(path);
    ASSERT_TRUE(DXWait::until([&] { return saved.size() == 1; }));
    QFile file(path);
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    const QByteArray text = file.readAll();
    EXPECT_TRUE(text.startsWith("n,t\n1,\"a,\"\"1\"\n")) << text.left(40).toStdString();
    EXPECT_EQ(text.count('\n'), 12346);
    page.writeCsv(folder.filePath(u"no/such/folder.csv"_qs));
    ASSERT_TRUE(DXWait::until([&] { return saved.size() == 2; }));
    EXPECT_EQ(saved[1][0].value<DXResultTask::Outcome>(), DXResultTask::Outcome::Failed);
    // The next run takes the page away, not what became of the file.
    page.writeCsv(path);
    ASSERT_TRUE(run(u"SELECT 1"_qs));
    EXPECT_TRUE(DXWait::until([&] {
        return messages().contains(u"12,345 rows saved to %1."_qs.arg(path));
    })) << qPrintable(messages());
}

class QueryTabOnServer : public DesktopTest
{
protected:
    QueryTabOnServer()
    {
        open().openArguments({uri(cluster)});
        EXPECT_TRUE(DXWait::until([this] { return window().documents().current() != nullptr; }));
    }

    PostgresCluster cluster;
};

TEST_F(QueryTabOnServer, leavesAServerThatAnswersNothing)
{
    ASSERT_TRUE(run(u"SELECT pg_backend_pid()"_qs));
    const pid_t backend = cells(0).toInt();
    ASSERT_TRUE(start(cluster, u"SELECT pg_sleep(600)"_qs));
    ASSERT_EQ(::kill(backend, SIGSTOP), 0);
    press(Qt::Key_Period, Qt::ControlModifier);
    EXPECT_TRUE(becomesIdle());
    EXPECT_THAT(messages().toStdString(), HasSubstr("did not stop when it was asked to"));
    ASSERT_TRUE(run(u"SELECT 'elsewhere', pg_backend_pid()"_qs));
    EXPECT_TRUE(cells(0).startsWith(u"elsewhere|")) << qPrintable(messages());

    // A tab is closed at once whatever its server does.
    const pid_t other = cells(0).section(u'|', 1).toInt();
    ASSERT_TRUE(start(cluster, u"SELECT pg_sleep(601)"_qs));
    ASSERT_EQ(::kill(other, SIGSTOP), 0);
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window().documents().current());
    for (const pid_t stopped : {backend, other})
        ::kill(stopped, SIGCONT);
}

TEST_F(QueryTabOnServer, saysWhatBecameOfTheTransactionItLeft)
{
    const auto leave = [this](const std::function<void()> &begin) {
        EXPECT_TRUE(run(u"BEGIN; SELECT pg_backend_pid()"_qs));
        const pid_t backend = cells(0).toInt();
        EXPECT_EQ(::kill(backend, SIGSTOP), 0);
        QSignalSpy states(&tab().session(), &DXQuerySession::stateChanged);
        begin();
        // Told first by the tab itself, then by who waits for the server.
        EXPECT_TRUE(DXWait::until([&states] { return states.size() == 2; }));
        tab().cancel();
        EXPECT_TRUE(becomesIdle());
        ::kill(backend, SIGCONT);
        return messages().section(u'\n', -1).toStdString();
    };
    const std::string left = "did not stop when it was asked to, so the connection was closed. ";
    EXPECT_THAT(leave([this] {
                    tab().editor().setText(u"SELECT 1"_qs);
                    tab().runAll();
                }),
                HasSubstr(left + "The open transaction is gone with the connection."));
    EXPECT_FALSE(tab().session().isInTransaction());
    EXPECT_THAT(leave([this] { tab().session().commit(); }),
                HasSubstr(left + "Whether the transaction was committed is not known."));
}

TEST_F(QueryTabOnServer, outlivesItsServer)
{
    ASSERT_TRUE(run(u"SELECT 1"_qs));
    cluster.stop();
    cluster.start();
    ASSERT_TRUE(run(u"SELECT 2"_qs));
    EXPECT_EQ(cells(0), u"2"_qs) << qPrintable(messages());
    EXPECT_THAT(messages().toStdString(), HasSubstr("made anew"));

    ASSERT_TRUE(run(u"BEGIN"_qs));
    cluster.stop();
    cluster.start();
    ASSERT_TRUE(run(u"SELECT 3"_qs));
    EXPECT_THAT(messages().toStdString(), HasSubstr("the open transaction with it"));
    EXPECT_TRUE(tab().resultPages().isEmpty());
    ASSERT_TRUE(run(u"SELECT 4"_qs));
    EXPECT_EQ(cells(0), u"4"_qs);

    ASSERT_TRUE(start(cluster, u"SELECT pg_sleep(600)"_qs));
    cluster.killHard();
    ASSERT_TRUE(becomesIdle());
    EXPECT_FALSE(messages().isEmpty());
    EXPECT_THAT(statusText().toStdString(), HasSubstr("dba@postgres|"));
    ASSERT_TRUE(run(u"SELECT 5"_qs));
    EXPECT_THAT(messages().toStdString(), HasSubstr("failed"));
    cluster.start();
    ASSERT_TRUE(run(u"SELECT 6"_qs));
    EXPECT_EQ(cells(0), u"6"_qs) << qPrintable(messages());
}

} // namespace
