// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXClientPool.h"
#include "client/DabroDatabaseClient.h"
#include "client/DatabaseResultSet.h"
#include "driver/PostgresDatabaseConnectionDetails.h"
#include "support/Background.h"
#include "support/DXWait.h"
#include "support/PostgresCluster.h"
#include "support/PrintQt.h"

#include <gtest/gtest.h>

#include <thread>

namespace
{

// A client that the pool lends over a real server of its own, so that a test may kill it.
class ConnectionPool : public testing::Test
{
protected:
    ConnectionPool()
    {
        details.setHost(cluster.socketFolder());
        details.setPort(cluster.port());
        details.setUsername(PostgresCluster::superuser());
        details.setDatabase(QStringLiteral("postgres"));
    }

    // The first cell of what query answers, or the error's text.
    QString run(const QString &query, const DXClientPool::Options &options = {})
    {
        return inBackground([&] {
            QString cell;
            DXError error;
            pool.executeQuery(
                [&](DabroDatabaseClient &client, DXError *failure) {
                    const auto rows = client.executeQuery(query, failure);
                    if (rows && rows->next(failure))
                        cell = rows->stringForColumnIndex(0).toText();
                },
                details, &error, options);
            return error ? error.description() : cell;
        });
    }
    int sessions() const
    {
        return cluster
            .psql(QStringLiteral("SELECT count(*) FROM pg_stat_activity WHERE usename = 'dba' "
                                 "AND backend_type = 'client backend' "
                                 "AND pid <> pg_backend_pid()"))
            .trimmed()
            .toInt();
    }

    PostgresCluster cluster;
    PostgresDatabaseConnectionDetails details;
    DXClientPool pool;
};

TEST_F(ConnectionPool, recoversWhenTheServerDoes)
{
    const QString backend = QStringLiteral("SELECT pg_backend_pid()");
    const QString first = run(backend);
    EXPECT_EQ(run(backend), first);

    cluster.stop();
    cluster.start();
    const QString second = run(backend);
    EXPECT_GT(second.toInt(), 0) << second.toStdString();

    cluster.killHard();
    EXPECT_FALSE(run(backend).isEmpty()) << "a server that is gone is an error";
    cluster.start();
    EXPECT_GT(run(backend).toInt(), 0);

    EXPECT_EQ(run(QStringLiteral("BEGIN")), QString());
    EXPECT_EQ(run(QStringLiteral("SELECT count(*) FROM pg_stat_activity "
                                 "WHERE pid = pg_backend_pid() AND xact_start = query_start")),
              QStringLiteral("1"))
        << "no transaction is left behind";
    EXPECT_EQ(sessions(), 1);
}

TEST_F(ConnectionPool, triesAgainWhenItsSessionIsTerminated)
{
    const QString others = QStringLiteral(
        "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE usename = 'dba' "
        "AND backend_type = 'client backend' AND pid <> pg_backend_pid()");
    int calls = 0;
    const bool isDone = inBackground([&] {
        return pool.executeQuery(
            [&](DabroDatabaseClient &client, DXError *failure) {
                if (++calls == 1)
                    cluster.psql(others);
                client.executeNonQuery(QStringLiteral("SELECT 1"), failure);
            },
            details, nullptr, {.retryOnError = DabroDatabaseConnectionPool::RetryOnError::Yes});
    });
    EXPECT_TRUE(isDone);
    EXPECT_EQ(calls, 2);
}

TEST_F(ConnectionPool, shutdownCancelsWhatTheServerComputes)
{
    DXWait::Gate started;
    DXError error;
    std::jthread sleeper([&] {
        pool.executeQuery(
            [&started](DabroDatabaseClient &client, DXError *failure) {
                started.open();
                client.executeNonQuery(QStringLiteral("SELECT pg_sleep(600)"), failure);
            },
            details, &error, {});
    });
    ASSERT_TRUE(started.wait());
    pool.shutdown();
    sleeper.join();
    EXPECT_TRUE(error.description().contains(QStringLiteral("canceling statement")))
        << error.description().toStdString();
    EXPECT_TRUE(DXWait::until([this] { return sessions() == 0; }));
}

} // namespace
