// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/PostgresCluster.h"

#include "support/PrintQt.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>

#include <csignal>
#include <gtest/gtest.h>

namespace
{

template<typename Condition>
bool becomesTrue(Condition condition)
{
    constexpr int limitMilliseconds = 30'000;
    const QDeadlineTimer limit(limitMilliseconds);
    while (!condition() && !limit.hasExpired())
        QThread::msleep(5);
    return condition();
}

QString serverProcess(const PostgresCluster &cluster)
{
    QFile file(cluster.socketFolder() + QStringLiteral("/data/postmaster.pid"));
    return file.open(QFile::ReadOnly) ? QString::fromLatin1(file.readLine().trimmed()) : QString();
}

[[noreturn]] void startServerAndDie(const QString &tellIn)
{
    const PostgresCluster cluster;
    QFile file(tellIn);
    if (file.open(QFile::WriteOnly))
        file.write((cluster.socketFolder() + u'\n' + serverProcess(cluster)).toUtf8());
    file.close();
    ::raise(SIGKILL);
    ::_exit(0);
}

TEST(PostgresCluster, leavesNothingBehindWhenTheTestIsKilled)
{
    const QTemporaryDir folder;
    const QString told = folder.filePath(QStringLiteral("told"));
    EXPECT_EXIT(startServerAndDie(told), testing::KilledBySignal(SIGKILL), "");

    QFile file(told);
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    const QString serverFolder = QString::fromUtf8(file.readLine().trimmed());
    const QString process = QString::fromUtf8(file.readLine().trimmed());
    ASSERT_GT(process.toInt(), 1);
    EXPECT_TRUE(becomesTrue([&] { return !QFileInfo::exists(serverFolder); }));
    EXPECT_FALSE(QFileInfo::exists(QStringLiteral("/proc/") + process + QStringLiteral("/fd/0")));
}

TEST(PostgresCluster, comesBackOnItsPortAfterACrashAndAStop)
{
    PostgresCluster cluster({.tcp = true});
    cluster.psql(QStringLiteral("CREATE TABLE kept (n integer); INSERT INTO kept VALUES (1)"));
    const quint16 port = cluster.port();
    const QString killed = serverProcess(cluster);

    cluster.killHard();
    cluster.start();
    EXPECT_EQ(cluster.port(), port);
    EXPECT_NE(serverProcess(cluster), killed);
    EXPECT_EQ(cluster.psql(QStringLiteral("SELECT count(*) FROM kept")), u"1");

    cluster.stop();
    EXPECT_EQ(serverProcess(cluster), QString());
    cluster.start();
    EXPECT_EQ(cluster.psql(QStringLiteral("SELECT inet_server_port() IS NULL")), u"t");
}

TEST(PostgresCluster, makesDatabasesOfEveryEncoding)
{
    const auto &cluster = PostgresCluster::shared();
    for (const auto *const encoding : {"UTF8", "SQL_ASCII", "LATIN1"}) {
        const QString name = QStringLiteral("Odd \"%1\"").arg(QLatin1String(encoding));
        cluster.createDatabase(name, QLatin1String(encoding));
        EXPECT_EQ(cluster.psql(QStringLiteral("SHOW server_encoding"), name).toStdString(),
                  encoding);
    }
}

} // namespace
