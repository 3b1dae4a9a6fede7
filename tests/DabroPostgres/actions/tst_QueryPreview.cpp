// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/actions/OpenSheet.h"
#include "DabroPostgres/driver/ServerAccess.h"
#include "core/DXError.h"
#include "query/StaticQueryLoader.h"
#include "support/PrintQt.h"

#include <gtest/gtest.h>

namespace
{

class QueryPreviewTest : public testing::Test
{
protected:
    QueryPreviewTest()
    {
        window.show();
        preview->setAcceptButtonTitle(u"Apply"_qs);
        preview->setDestructive(false);
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
    EXPECT_TRUE(sheet.button(u"Apply"_qs)->isDefault());
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
