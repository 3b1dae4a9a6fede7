// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/driver/ServerAccess.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "client/DatabaseResultSet.h"
#include "support/Background.h"
#include "support/DXWait.h"
#include "support/PrintQt.h"

#include <gtest/gtest.h>

using namespace ServerAccess;

namespace
{

const auto manyRows =
    QStringLiteral("SELECT g, repeat('x', 1000) FROM generate_series(1, 3000000) g");

// Does something on the executing thread once rows have been handed over.
class ActOnFirstRows final : public DXQueryResult
{
public:
    explicit ActOnFirstRows(std::function<void()> action)
        : m_action(std::move(action))
    { }
    void incrementTotalResultCountBy(qint64 count) override
    {
        DXQueryResult::incrementTotalResultCountBy(count);
        if (count > 0 && m_action)
            std::exchange(m_action, nullptr)();
    }

private:
    std::function<void()> m_action;
};

// What is left of a batch of one statement that was cut off while rows came in.
void expectRowsAndOneError(const DXQueryResult &result, const DXError &error)
{
    EXPECT_TRUE(error);
    ASSERT_EQ(result.resultSets().size(), 1);
    const auto details = result.resultSets().first();
    EXPECT_TRUE(details->isFinished());
    ASSERT_EQ(details->messages().size(), 1);
    EXPECT_EQ(details->messages().first().color, DXMessageColor::Red);
    EXPECT_EQ(result.messagesCount(), 1);
    EXPECT_GE(details->rows()->rowCount(), 100);
    EXPECT_LT(details->rows()->rowCount(), 3'000'000);
    EXPECT_EQ(result.totalResultCount(), details->rows()->rowCount());
    EXPECT_EQ(details->value(99, 0), DXValue(qint64(100)));
}

void expectUsable(PostgresDatabaseClient &client)
{
    EXPECT_EQ(scalar(client, QStringLiteral("SELECT 42")), u"42");
    EXPECT_TRUE(client.isAlive());
    EXPECT_FALSE(client.isInTransaction());
}

// Until the server runs the query of this back end.
bool becomesActive(const PostgresCluster &cluster, const QString &backEnd)
{
    return DXWait::until([&] {
        return cluster.psql(QStringLiteral("SELECT count(*) FROM pg_stat_activity WHERE pid = %1"
                                           " AND state = 'active' AND wait_event = 'PgSleep'")
                                .arg(backEnd))
               == u"1";
    });
}

class ServerAccessRobustness : public testing::Test
{
protected:
    PostgresCluster &m_cluster = PostgresCluster::shared();
    const std::unique_ptr<PostgresDatabaseClient> m_client = connected(record(m_cluster));
    const QString m_backEnd = scalar(*m_client, QStringLiteral("SELECT pg_backend_pid()"));
};

struct EndCase
{
    QString text;
    /// Part of the error, empty when none is expected.
    QString error;
};

TEST_F(ServerAccessRobustness, noStatementWedgesTheConnection)
{
    m_cluster.psql(QStringLiteral("DROP TABLE IF EXISTS copied; CREATE TABLE copied (n integer)"));
    const auto notRead = QStringLiteral("were read and dropped");
    const auto noData = QStringLiteral("there is no data to read here");
    const QList<EndCase> cases{
        {QStringLiteral("COPY (SELECT generate_series(1, 1000)) TO STDOUT"), notRead},
        {QStringLiteral("COPY (SELECT 1) TO STDOUT; SELECT 2"), notRead},
        {QStringLiteral("SELECT 1; COPY (SELECT 1 / 0) TO STDOUT; SELECT 2"),
         QStringLiteral("division by zero")},
        {QStringLiteral("COPY copied FROM STDIN"), noData},
        {QStringLiteral("SELECT 1; COPY copied FROM STDIN; SELECT 2"), noData},
        {QStringLiteral("COPY copied FROM STDIN; COPY (SELECT 1) TO STDOUT"), noData},
        {QStringLiteral("COPY absent FROM STDIN"), QStringLiteral("\"absent\" does not exist")},
        {QStringLiteral("LISTEN news; NOTIFY news, 'text'"), {}},
        {QStringLiteral("UNLISTEN *"), {}},
        {QStringLiteral("-- nothing"), {}},
        {QStringLiteral("/* nothing */ ;; -- at all"), {}},
        {QStringLiteral(""), {}},
        {QStringLiteral("SELECT"), {}},
        {QStringLiteral("SELECT 1; SELECT 1 / 0; SELECT 2"), QStringLiteral("division by zero")},
        {QStringLiteral("nonsense"), QStringLiteral("syntax error")},
        {QStringLiteral("SELECT g / (5000 - g) FROM generate_series(1, 10000) g"),
         QStringLiteral("division by zero")},
    };
    for (const EndCase &each : cases) {
        SCOPED_TRACE(each.text.toStdString());
        const auto expectEnd = [&](const DXError &error) {
            EXPECT_EQ(error.isEmpty(), each.error.isEmpty()) << error.description().toStdString();
            EXPECT_TRUE(error.description().contains(each.error))
                << error.description().toStdString();
            expectUsable(*m_client);
        };
        DXQueryResult result;
        expectEnd(inBackground([&] { return runBatch(*m_client, each.text, result); }));
        ASSERT_EQ(result.resultSets().size(), 1);
        EXPECT_EQ(result.resultSets().first()->messages().size(), 1);
        EXPECT_TRUE(result.resultSets().first()->isFinished());

        expectEnd(errorOf(*m_client, each.text));

        inBackground([&] { m_client->executeQuery(each.text, nullptr); });
        expectUsable(*m_client);
    }
    EXPECT_EQ(m_cluster.psql(QStringLiteral("SELECT count(*) FROM copied")), u"0");
}

TEST_F(ServerAccessRobustness, rowsThatNobodyReadsAreDropped)
{
    const qint64 read = inBackground([this] {
        DXError error;
        const auto rows = m_client->executeQuery(
            QStringLiteral("SELECT generate_series(1, 100000); SELECT 2; COPY copied FROM STDIN"),
            &error);
        return rows && rows->next(&error) ? rows->objectForColumnIndex(0).toInteger() : 0;
    });
    EXPECT_EQ(read, 1);
    expectUsable(*m_client);
}

TEST_F(ServerAccessRobustness, notificationsDoNotLookLikeTheEnd)
{
    ASSERT_FALSE(errorOf(*m_client, QStringLiteral("LISTEN news")));
    m_cluster.psql(QStringLiteral("SELECT pg_notify('news', repeat('x', 7000))"
                                  " FROM generate_series(1, 100)"));
    expectUsable(*m_client);
}

TEST_F(ServerAccessRobustness, cancelsWhatTheServerComputes)
{
    auto query = start([this] {
        DXError error;
        m_client->executeNonQuery(QStringLiteral("SELECT pg_sleep(600)"), &error);
        return error;
    });
    EXPECT_TRUE(becomesActive(m_cluster, m_backEnd));
    EXPECT_TRUE(m_client->cancelCurrentQuery(nullptr));
    EXPECT_TRUE(finish(query).description().contains(
        QStringLiteral("canceling statement due to user request")));
    expectUsable(*m_client);
}

TEST_F(ServerAccessRobustness, cancelsWhileRowsStream)
{
    DXWait::Gate rowsCame;
    ActOnFirstRows result([&rowsCame] { rowsCame.open(); });
    auto query = start([&] { return runBatch(*m_client, manyRows, result); });
    ASSERT_TRUE(rowsCame.wait());
    EXPECT_TRUE(m_client->cancelCurrentQuery(nullptr));
    const DXError error = finish(query);
    EXPECT_TRUE(
        error.description().contains(QStringLiteral("canceling statement due to user request")));
    expectRowsAndOneError(result, error);
    expectUsable(*m_client);
}

TEST_F(ServerAccessRobustness, cancellingNothingHarmsNothing)
{
    EXPECT_TRUE(m_client->cancelCurrentQuery(nullptr));
    expectUsable(*m_client);
    m_client->disconnect();
    EXPECT_FALSE(m_client->cancelCurrentQuery(nullptr));
    EXPECT_FALSE(PostgresDatabaseClient(record(m_cluster)).cancelCurrentQuery(nullptr));
}

// As when a tab is closed while its query is being stopped.
TEST_F(ServerAccessRobustness, cancellingMayMeetConnectingAndDisconnecting)
{
    auto sessions = start([this] {
        DXError error;
        for (int session = 0; session < 20 && !error; ++session) {
            m_client->executeNonQuery(QStringLiteral("SELECT 1"), nullptr);
            m_client->disconnect();
            m_client->connect(nullptr);
        }
        return error;
    });
    while (sessions.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        m_client->cancelCurrentQuery(nullptr);
    EXPECT_FALSE(finish(sessions));
    m_client->disconnect();
    EXPECT_TRUE(inBackground([this] { return m_client->connect(nullptr); }));
    expectUsable(*m_client);
}

TEST_F(ServerAccessRobustness, noticesThatItsIdleSessionWasEnded)
{
    EXPECT_TRUE(m_client->isAlive());
    m_cluster.psql(QStringLiteral("SELECT pg_terminate_backend(%1)").arg(m_backEnd));
    EXPECT_TRUE(DXWait::until([this] { return !m_client->isAlive(); }));
    EXPECT_TRUE(errorOf(*m_client, QStringLiteral("SELECT 1")));
    EXPECT_FALSE(m_client->isConnected());
}

TEST_F(ServerAccessRobustness, reportsThatItsRunningSessionWasEnded)
{
    auto query = start([this] {
        DXError error;
        m_client->executeNonQuery(QStringLiteral("SELECT pg_sleep(600)"), &error);
        return error;
    });
    EXPECT_TRUE(becomesActive(m_cluster, m_backEnd));
    m_cluster.psql(QStringLiteral("SELECT pg_terminate_backend(%1)").arg(m_backEnd));
    EXPECT_TRUE(finish(query).description().contains(
        QStringLiteral("terminating connection due to administrator command")));
    EXPECT_FALSE(m_client->isAlive());
}

// One server, which each test kills and starts again.
class ServerAccessKilledServer : public testing::Test
{
protected:
    static void SetUpTestSuite() { s_cluster = std::make_unique<PostgresCluster>(); }
    static void TearDownTestSuite() { s_cluster.reset(); }

    static inline std::unique_ptr<PostgresCluster> s_cluster;
    PostgresCluster &m_cluster = *s_cluster;
};

TEST_F(ServerAccessKilledServer, leavesTheRowsReadAndOneError)
{
    const Record details = record(m_cluster);
    const auto client = connected(details);
    ActOnFirstRows result([this] { m_cluster.killHard(); });
    const DXError error = inBackground([&] { return runBatch(*client, manyRows, result); });
    expectRowsAndOneError(result, error);
    EXPECT_FALSE(client->isAlive());
    EXPECT_FALSE(client->isInTransaction());
    EXPECT_TRUE(errorOf(*client, QStringLiteral("SELECT 1")));
    EXPECT_FALSE(client->cancelCurrentQuery(nullptr));
    EXPECT_FALSE(connect(details).isConnected);

    m_cluster.start();
    expectUsable(*connected(details));
}

TEST_F(ServerAccessKilledServer, givesItsErrorOnceToWhoReadsRowByRow)
{
    const auto client = connected(record(m_cluster));
    inBackground([&] {
        DXError error;
        const auto rows = client->executeQuery(manyRows, &error);
        ASSERT_TRUE(rows && rows->next(&error) && !error);
        m_cluster.killHard();
        qint64 read = 1;
        while (rows->next(&error))
            ++read;
        EXPECT_TRUE(error);
        EXPECT_LT(read, 3'000'000);
        EXPECT_TRUE(rows->objectForColumnIndex(0).isNull());

        DXError again;
        EXPECT_FALSE(rows->next(&again));
        EXPECT_FALSE(rows->nextResultSet(&again));
        EXPECT_FALSE(again) << again.description().toStdString();
    });
    m_cluster.start();
}

// A session that broke in a borrower's hands is not lent to the next one.
TEST_F(ServerAccessKilledServer, costsTheNextBorrowerOfThePoolNothing)
{
    using Pool = DabroDatabaseConnectionPool;
    const Record details = record(m_cluster);
    const auto count = [&](const QString &query, bool isKilling, DXError *error) {
        return inBackground([&] {
            qint64 read = 0;
            const auto block = [&](DabroDatabaseClient &client, DXError *blockError) {
                const auto rows = client.executeQuery(query, blockError);
                while (rows && rows->next(blockError)) {
                    if (++read == 1 && isKilling)
                        m_cluster.killHard();
                }
            };
            Pool::executeQuery(block, *details, error);
            return read;
        });
    };
    DXError error;
    const qint64 readBeforeTheEnd = count(manyRows, true, &error);
    EXPECT_TRUE(error);
    EXPECT_GE(readBeforeTheEnd, 1);
    EXPECT_LT(readBeforeTheEnd, 3'000'000);

    m_cluster.start();
    error = {};
    EXPECT_EQ(count(QStringLiteral("SELECT generate_series(1, 5)"), false, &error), 5);
    EXPECT_FALSE(error) << error.description().toStdString();
    Pool::disconnectAll(*details);
}

} // namespace
