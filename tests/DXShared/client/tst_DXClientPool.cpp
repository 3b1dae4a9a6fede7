// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXClientPool.h"

#include "DXShared/client/ScriptedClient.h"
#include "dispatch/DXDispatch.h"
#include "support/DXWait.h"
#include "support/PrintQt.h"

#include <gmock/gmock.h>

#include <atomic>
#include <latch>
#include <stdexcept>
#include <thread>
#include <vector>

namespace
{

using Pool = DabroDatabaseConnectionPool;

constexpr Pool::Options Retrying{.retryOnError = Pool::RetryOnError::Yes};
constexpr Pool::Options Unpooled{.allowPooled = Pool::AllowPooled::No};

Pool::Block statement(const QString &text)
{
    return [text](DabroDatabaseClient &client, DXError *error) {
        client.executeNonQuery(text, error);
    };
}

class DXClientPoolTest : public testing::Test
{
protected:
    bool run(DXClientPool &pool, const Pool::Block &block, const Pool::Options &options = {})
    {
        DXError error;
        const bool isDone = pool.executeQuery(block, details, &error, options);
        EXPECT_EQ(isDone, error.isEmpty());
        failure = error.description();
        return isDone;
    }

    std::shared_ptr<DabroDatabaseClient> connected() const
    {
        std::shared_ptr<DabroDatabaseClient> client = details.createNewClient();
        EXPECT_TRUE(client->connect(nullptr));
        return client;
    }

    ScriptedServer server;
    const ScriptedDBC details{server};
    QString failure;
};

TEST_F(DXClientPoolTest, lendsAtMostItsBoundToManyThreads)
{
    constexpr std::size_t bound = 3;
    DXClientPool pool({.connections = bound});
    std::atomic<int> done = 0;
    std::latch full(bound);
    {
        std::vector<std::jthread> threads;
        threads.reserve(6);
        for (int n = 0; n < 6; ++n)
            threads.emplace_back([&, n] {
                const auto waitUntilFull = [&](DabroDatabaseClient &, DXError *) {
                    full.count_down();
                    full.wait();
                };
                if (n < static_cast<int>(bound))
                    pool.executeQuery(waitUntilFull, details, nullptr, {});
                for (int round = 0; round < 100; ++round)
                    done += pool.executeQuery(statement(QStringLiteral("x")), details, nullptr, {})
                                ? 1
                                : 0;
            });
    }
    EXPECT_EQ(done, 600);
    EXPECT_EQ(server.sessionsEver(), 3);
    EXPECT_EQ(server.mostSessions(), 3);
}

TEST_F(DXClientPoolTest, replacesWhatDiedWhileIdle)
{
    DXClientPool pool;
    EXPECT_TRUE(run(pool, statement(QStringLiteral("x"))));
    server.restart();
    int calls = 0;
    EXPECT_TRUE(run(pool, [&calls](DabroDatabaseClient &client, DXError *error) {
        ++calls;
        client.executeNonQuery(QStringLiteral("x"), error);
    }));
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(server.sessionsEver(), 2);
    EXPECT_EQ(server.sessionsOpen(), 1);
}

TEST_F(DXClientPoolTest, runsABlockAgainOnlyWhenAskedAndWhenTheConnectionBroke)
{
    struct Case
    {
        const char *what;
        Pool::Options options;
        bool breaks;
        int calls;
        QString failure;
    };
    for (const auto &[what, options, breaks, calls, expected] : {
             Case{"asked and broken", Retrying, true, 2, QString()},
             Case{"not asked", {}, true, 1, QStringLiteral("connection lost")},
             Case{"not broken", Retrying, false, 1, QStringLiteral("refused")},
         }) {
        DXClientPool pool({.connections = 1});
        int called = 0;
        run(
            pool,
            [&, fails = breaks](DabroDatabaseClient &client, DXError *error) {
                ++called;
                if (fails)
                    client.executeNonQuery(
                        called == 1 ? QStringLiteral("die") : QStringLiteral("x"), error);
                else
                    DXError::report(error,
                                    DXError(QStringLiteral("t"), 1, QStringLiteral("refused")));
            },
            options);
        EXPECT_EQ(called, calls) << what;
        EXPECT_EQ(failure, expected) << what;
        EXPECT_FALSE(pool.executeQuery(
            [](DabroDatabaseClient &, DXError *error) {
                DXError::report(error, DXError(QStringLiteral("t"), 1, QStringLiteral("refused")));
            },
            details, nullptr, {}))
            << "the result decides also without a slot";
    }
}

TEST_F(DXClientPoolTest, lendsNoOpenTransaction)
{
    DXClientPool pool;
    for (const bool resetWorks : {true, false}) {
        const int before = server.sessionsEver();
        server.setResetWorks(resetWorks);
        EXPECT_TRUE(run(pool, statement(QStringLiteral("begin"))));
        EXPECT_TRUE(run(pool, [](DabroDatabaseClient &client, DXError *) {
            EXPECT_FALSE(client.isInTransaction());
        }));
        EXPECT_EQ(server.sessionsEver() - before, 1);
    }
    EXPECT_EQ(server.sessionsOpen(), 1);
}

TEST_F(DXClientPoolTest, goesBeyondItsBoundForWhoeverHoldsAConnection)
{
    DXClientPool pool({.connections = 1});
    EXPECT_TRUE(run(pool, [&](DabroDatabaseClient &outer, DXError *error) {
        pool.executeQuery(
            [&outer](DabroDatabaseClient &inner, DXError *) { EXPECT_NE(&outer, &inner); }, details,
            error, {});
    }));
    EXPECT_EQ(server.mostSessions(), 2);
    EXPECT_EQ(server.sessionsOpen(), 1);
}

// Each holds the only connection that the other wants.
TEST_F(DXClientPoolTest, crossedBorrowsDoNotWaitForEachOther)
{
    const ScriptedDBC other(server, QStringLiteral("b"));
    DXClientPool pool({.connections = 1});
    std::latch bothHold(2);
    const auto borrowBoth = [&](const DabroDBC &first, const DabroDBC &second) {
        EXPECT_TRUE(pool.executeQuery(
            [&](DabroDatabaseClient &, DXError *error) {
                bothHold.arrive_and_wait();
                pool.executeQuery(statement(QStringLiteral("x")), second, error, {});
            },
            first, nullptr, {}));
    };
    std::jthread thread([&] { borrowBoth(other, details); });
    borrowBoth(details, other);
    thread.join();
    EXPECT_EQ(server.sessionsOpen(), 2);
}

TEST_F(DXClientPoolTest, givesAConnectionOfItsOwnWhenAskedAndKeepsItsBound)
{
    DXClientPool pool({.connections = 1});
    EXPECT_TRUE(run(pool, statement(QStringLiteral("x"))));
    EXPECT_EQ(server.sessionsOpen(), 1);
    EXPECT_TRUE(run(pool, statement(QStringLiteral("x")), Unpooled));
    EXPECT_EQ(server.sessionsEver(), 2);
    EXPECT_EQ(server.mostSessions(), 1);
    EXPECT_EQ(server.sessionsOpen(), 0);
}

TEST_F(DXClientPoolTest, lendsWhatItAdopted)
{
    const ScriptedDBC other(server, QStringLiteral("b"));
    DXClientPool pool({.connections = 1});
    const auto client = connected();
    pool.adopt(client);
    pool.executeQuery([&](DabroDatabaseClient &lent, DXError *) { EXPECT_NE(&lent, client.get()); },
                      other, nullptr, {});
    for (int round = 0; round < 2; ++round)
        EXPECT_TRUE(run(pool, [&](DabroDatabaseClient &lent, DXError *) {
            EXPECT_EQ(&lent, client.get());
            // It counts: there is no room for another one.
            pool.adopt(connected());
            EXPECT_TRUE(DXWait::until([this] { return server.sessionsOpen() == 2; }));
        }));
    server.restart();
    EXPECT_TRUE(run(pool, statement(QStringLiteral("x"))));
    EXPECT_FALSE(client->isConnected());

    pool.adopt(connected());
    EXPECT_TRUE(DXWait::until([this] { return server.sessionsOpen() == 2; }));
    pool.disconnectAll(details);
    EXPECT_EQ(server.sessionsOpen(), 1);
    pool.adopt(connected());
    EXPECT_EQ(server.sessionsOpen(), 2);
    pool.shutdown();
    EXPECT_EQ(server.sessionsOpen(), 0);
    pool.adopt(connected());
    EXPECT_TRUE(DXWait::until([this] { return server.sessionsOpen() == 0; }));
}

TEST_F(DXClientPoolTest, disconnectAllClosesIdleAndLentOnesOfItsKeyAlone)
{
    const ScriptedDBC other(server, QStringLiteral("b"));
    DXClientPool pool;
    pool.executeQuery(statement(QStringLiteral("x")), other, nullptr, {});
    run(pool, [&](DabroDatabaseClient &, DXError *error) {
        pool.executeQuery(statement(QStringLiteral("x")), details, error, {});
        EXPECT_EQ(server.sessionsOpen(), 3);
        pool.disconnectAll(details);
        EXPECT_EQ(server.sessionsOpen(), 2);
    });
    EXPECT_EQ(server.sessionsOpen(), 1);
    EXPECT_TRUE(run(pool, statement(QStringLiteral("x"))));
    EXPECT_EQ(server.sessionsOpen(), 2);
}

TEST_F(DXClientPoolTest, freesThePlaceOfWhatFailed)
{
    DXClientPool pool({.connections = 1});
    server.restart(true);
    EXPECT_FALSE(run(pool, statement(QStringLiteral("x"))));
    EXPECT_EQ(failure, QStringLiteral("down"));
    server.restart();
    EXPECT_THROW(run(pool, [](DabroDatabaseClient &,
                              DXError *) { throw std::runtime_error("out of luck"); }),
                 std::runtime_error);
    EXPECT_EQ(server.sessionsOpen(), 0);
    EXPECT_TRUE(run(pool, statement(QStringLiteral("x"))));
}

// A block that goes on after a cancelled query is cancelled again; who waits is refused.
TEST_F(DXClientPoolTest, shutdownCancelsRefusesAndCloses)
{
    DXClientPool pool({.connections = 1});
    DXWait::Gate started;
    std::jthread sleeper([&] {
        DXError error;
        EXPECT_FALSE(pool.executeQuery(
            [&started](DabroDatabaseClient &client, DXError *blockError) {
                started.open();
                for (int query = 0; query < 3; ++query)
                    client.executeNonQuery(QStringLiteral("sleep"), blockError);
            },
            details, &error, Retrying));
        EXPECT_EQ(error.description(), QStringLiteral("cancelled"));
    });
    ASSERT_TRUE(started.wait());
    std::jthread waiter([&] {
        DXError error;
        EXPECT_FALSE(pool.executeQuery([](DabroDatabaseClient &, DXError *) { FAIL(); }, details,
                                       &error, {}));
        EXPECT_FALSE(error.isEmpty());
    });
    pool.shutdown();
    sleeper.join();
    waiter.join();
    EXPECT_EQ(server.sessionsOpen(), 0);
    EXPECT_EQ(server.sessionsEver(), 1);
    EXPECT_FALSE(run(pool, statement(QStringLiteral("x"))));
    EXPECT_FALSE(failure.isEmpty());
}

TEST_F(DXClientPoolTest, shutdownGivesUpTunnelsThatAreOpening)
{
    DXClientPool pool;
    server.setStalls();
    std::jthread caller([&] { EXPECT_FALSE(run(pool, statement(QStringLiteral("x")))); });
    EXPECT_TRUE(server.stalled.wait());
    pool.shutdown();
    caller.join();
    EXPECT_FALSE(failure.isEmpty());
}

TEST_F(DXClientPoolTest, closesWhatIdlesThroughTheEventLoop)
{
    DXClientPool pool(
        {.idle = std::chrono::milliseconds(0), .sweep = std::chrono::milliseconds(1)});
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(run(pool, statement(QStringLiteral("x"))));
        EXPECT_EQ(server.sessionsOpen(), 1);
        EXPECT_TRUE(DXWait::until([this] { return server.sessionsOpen() == 0; }));
    }
}

// Timers that outlive their pool find nothing to sweep.
TEST_F(DXClientPoolTest, poolsMayGoBeforeTheirTimers)
{
    for (int round = 0; round < 20; ++round) {
        DXClientPool pool(
            {.idle = std::chrono::milliseconds(0), .sweep = std::chrono::milliseconds(0)});
        run(pool, statement(QStringLiteral("x")));
    }
    std::atomic<bool> timersAreOver = false;
    DXDispatch::backgroundAfter(std::chrono::milliseconds(1),
                                [&timersAreOver] { timersAreOver = true; });
    EXPECT_TRUE(DXWait::until([&timersAreOver] { return timersAreOver.load(); }));
    EXPECT_EQ(server.sessionsOpen(), 0);
    EXPECT_EQ(server.sessionsEver(), 20);
}

} // namespace
