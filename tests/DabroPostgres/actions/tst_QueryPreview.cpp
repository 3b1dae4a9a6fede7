// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/actions/OpenSheet.h"
#include "DabroPostgres/driver/ServerAccess.h"
#include "core/DXError.h"
#include "query/StaticQueryLoader.h"
#include "support/PrintQt.h"

#include <QCoreApplication>
#include <QScopeGuard>
#include <QTranslator>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/types.h>

namespace
{

// To a language of its own, so that what was not given to a translator stands out.
class RunsTranslator final : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return QByteArrayView(context) == "DXScriptRun" ? u"Run: "_qs + QString::fromUtf8(text)
                                                        : QString();
    }
};

class QueryPreviewTest : public testing::Test
{
protected:
    QueryPreviewTest()
    {
        window.show();
        preview->setAcceptButtonTitle(u"Apply"_qs);
    }
    OpenSheet show(const QString &script)
    {
        preview->setQueryLoader(std::make_shared<StaticQueryLoader>(script));
        preview->beginSheetForWindow(&window, [this](int result) { results += result; });
        return OpenSheet(window);
    }
    static QString tables()
    {
        return PostgresCluster::shared()
            .psql(u"SELECT relname FROM pg_class WHERE relname LIKE 'preview%' ORDER BY 1"_qs)
            .replace(u'\n', u' ')
            .trimmed();
    }
    void TearDown() override
    {
        PostgresCluster::shared().psql(u"DROP TABLE IF EXISTS preview_a, preview_b, preview_c"_qs);
    }

    QWidget window;
    const ServerAccess::Record details = ServerAccess::record(PostgresCluster::shared());
    const std::shared_ptr<DXQueryPreviewViewController> preview =
        details->createQueryPreviewViewContoller();
    QList<int> results;
};

TEST_F(QueryPreviewTest, RunsAllStatementsOrNone)
{
    const QString script =
        u"CREATE TABLE preview_a ();\r\n-- ü\r\nSELECT *\r\nFROM preview_b;\r\nSELECT 1"_qs;
    QStringList reported;
    preview->setErrorReport([&](const DXError &error, const QString &of) {
        reported +=
            error.description().section(u'\n', 0, 0) + u" in "_qs + QString::number(of.size());
    });
    const OpenSheet sheet = show(script);
    EXPECT_TRUE(sheet.button(u"Cancel"_qs)->isDefault());
    sheet.click(u"Apply"_qs);
    ASSERT_TRUE(sheet.fails());
    EXPECT_EQ(sheet.failureHeadline(), u"Statement 2 of 3 failed; nothing was changed."_qs);
    EXPECT_EQ(tables(), QString());
    EXPECT_EQ(reported, QStringList(u"ERROR:  relation \"preview_b\" does not exist in %1"_qs.arg(
                            script.size())));
    sheet.click(u"Cancel"_qs);
    EXPECT_TRUE(sheet.closes());

    const OpenSheet other = show(u"CREATE TABLE preview_a (); CREATE TABLE preview_b ()"_qs);
    other.click(u"Apply"_qs);
    EXPECT_TRUE(other.closes());
    EXPECT_EQ(tables(), u"preview_a preview_b"_qs);
    EXPECT_EQ(results, (QList<int>{0, 1}));
}

TEST_F(QueryPreviewTest, SaysWhatStaysDone)
{
    preview->setUseTransaction(false);
    const OpenSheet sheet = show(u"CREATE TABLE preview_a (); SELEC; CREATE TABLE preview_b ()"_qs);
    sheet.click(u"Apply"_qs);
    ASSERT_TRUE(sheet.fails());
    EXPECT_EQ(sheet.failureHeadline(),
              u"Statement 2 of 3 failed; what was done before stays done."_qs);
    sheet.click(u"Cancel"_qs);
    EXPECT_TRUE(sheet.closes());

    preview->setUseTransaction(true);
    const OpenSheet own = show(u"CREATE TABLE preview_c (); COMMIT; SELEC"_qs);
    own.click(u"Apply"_qs);
    ASSERT_TRUE(own.fails());
    EXPECT_EQ(own.failureHeadline(),
              u"Statement 3 of 3 failed; what was done before stays done."_qs);
    EXPECT_EQ(tables(), u"preview_a preview_c"_qs);
}

TEST_F(QueryPreviewTest, SaysWhatIsNotKnown)
{
    PostgresCluster server;
    preview->setConnectionDetails(ServerAccess::record(server));
    preview->setUseTransaction(false);
    const OpenSheet sheet = show(u"SELECT pg_sleep(60)"_qs);
    sheet.click(u"Apply"_qs);
    ASSERT_TRUE(DXWait::until([&] {
        return server
            .psql(u"SELECT count(*) FROM pg_stat_activity WHERE query LIKE "
                  "'SELECT pg_sleep%'"_qs)
            .contains(u'1');
    }));
    server.killHard();
    ASSERT_TRUE(sheet.fails());
    EXPECT_TRUE(sheet.failureHeadline().startsWith(u"The connection broke"_qs));

    sheet.click(u"Apply"_qs);
    ASSERT_TRUE(sheet.fails());
    EXPECT_EQ(sheet.failureHeadline(), u"The server could not do it; nothing was changed."_qs);
    EXPECT_FALSE(sheet.failureText().isEmpty());
    EXPECT_EQ(results, QList<int>());
}

// A server that neither does what it is told nor stops must not keep the window behind the sheet.
TEST_F(QueryPreviewTest, LeavesAServerThatAnswersNothing)
{
    RunsTranslator translator;
    QCoreApplication::installTranslator(&translator);
    PostgresCluster server;
    server.psql(u"CREATE TABLE preview_a ()"_qs);
    preview->setConnectionDetails(ServerAccess::record(server));
    const auto holder = ServerAccess::connected(ServerAccess::record(server));
    ASSERT_FALSE(ServerAccess::errorOf(*holder, u"BEGIN; LOCK TABLE preview_a"_qs));
    QList<pid_t> stopped;
    const auto goOn = qScopeGuard([&stopped] {
        for (const pid_t backend : stopped)
            ::kill(backend, SIGCONT);
    });
    for (const bool isCancelledAgain : {false, true}) {
        const OpenSheet sheet = show(u"DROP TABLE preview_a"_qs);
        sheet.click(u"Apply"_qs);
        QString waiting;
        ASSERT_TRUE(DXWait::until([&] {
            waiting = server.psql(
                u"SELECT pid FROM pg_stat_activity WHERE wait_event_type = 'Lock'"
                " AND query = 'DROP TABLE preview_a' AND pid <> %1"_qs.arg(stopped.value(0)));
            return !waiting.isEmpty();
        }));
        stopped.append(waiting.toInt());
        ASSERT_EQ(::kill(stopped.constLast(), SIGSTOP), 0);
        sheet.click(u"Cancel"_qs);
        EXPECT_FALSE(sheet.hasFailed());
        if (isCancelledAgain) {
            sheet.click(u"Cancel"_qs);
            EXPECT_TRUE(sheet.hasFailed());
        }
        ASSERT_TRUE(sheet.fails());
        EXPECT_TRUE(sheet.failureHeadline().contains(u"not known"_qs));
        EXPECT_TRUE(sheet.failureText().contains(u"Run: The server did not stop when"_qs));
        sheet.click(u"Cancel"_qs);
        EXPECT_TRUE(sheet.closes());
    }
    EXPECT_EQ(results, (QList<int>{0, 0}));
}

TEST_F(QueryPreviewTest, StopsWhatRunsWhenItsWindowGoes)
{
    auto other = std::make_unique<QWidget>();
    other->show();
    preview->setQueryLoader(std::make_shared<StaticQueryLoader>(
        u"CREATE TABLE preview_a (); SELECT pg_sleep(60) /* preview */"_qs));
    preview->beginSheetForWindow(other.get(), {});
    const auto running = [] {
        return PostgresCluster::shared()
            .psql(u"SELECT 'running' FROM pg_stat_activity WHERE query LIKE "
                  "'% pg_sleep(60) /* preview */' AND state = 'active'"_qs)
            .contains(u"running"_qs);
    };
    OpenSheet(*other).click(u"Apply"_qs);
    ASSERT_TRUE(DXWait::until(running));
    other.reset();
    EXPECT_TRUE(DXWait::until([&] { return !running(); }));
    EXPECT_EQ(tables(), QString());
}

} // namespace
