// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/PostgresEnumTypeHelper.h"

#include "client/DabroDatabaseConnectionPool.h"
#include "core/DXLogHelper.h"
#include "core/DXNotificationCenter.h"
#include "driver/PostgresDatabaseConnectionDetails.h"
#include "support/Background.h"
#include "support/DXWait.h"
#include "support/PostgresCluster.h"
#include "support/PrintQt.h"

#include <gtest/gtest.h>

#include <atomic>

namespace
{

using RequiresUpdate = PostgresEnumTypeHelper::RequiresUpdate;

std::shared_ptr<PostgresDatabaseConnectionDetails>
login(const QString &user, const QString &database = QStringLiteral("enumerations"))
{
    auto details = std::make_shared<PostgresDatabaseConnectionDetails>();
    details->setHost(PostgresCluster::shared().socketFolder());
    details->setPort(PostgresCluster::shared().port());
    details->setUsername(user);
    details->setDatabase(database);
    return details;
}

// Every type as its name and its labels.
QStringList cached(const DabroDBC &details)
{
    const auto types = PostgresEnumTypeHelper::enumTypesForDatabaseConnection(details);
    if (!types)
        return {QStringLiteral("none")};
    QStringList texts;
    for (const PostgresEnumTypeHelperDetails &type : *types) {
        QStringList labels;
        for (const PostgresEnumDetails &entry : type.enumEntries) {
            EXPECT_EQ(entry.display, entry.value);
            labels.append(entry.value);
        }
        EXPECT_TRUE(type.lastUpdated.isValid());
        texts.append(type.typeName + u'=' + labels.join(u','));
    }
    return texts;
}

void load(const DabroDBC &details)
{
    inBackground([&] {
        PostgresEnumTypeHelper::doGetEnumTypesForDatabaseConnection(
            details, PostgresEnumTypeHelper::enumTypesForDatabaseConnection(details));
    });
}

// Counts what is logged and posted while it lives.
struct Witness
{
    QStringList lines() const
    {
        const std::lock_guard lock(mutex);
        return logged;
    }

    mutable std::mutex mutex;
    QStringList logged;
    std::atomic<int> news = 0;
    std::shared_ptr<void> lineObserver =
        DXLogHelper::sharedInstance().observeLines([this](const QString &line) {
            const std::lock_guard lock(mutex);
            if (line.startsWith(QLatin1String("List_EnumDetails"))
                || line.startsWith(QLatin1String("Database version")))
                logged.append(line);
        });
    std::shared_ptr<void> newsObserver = DXNotificationCenter::sharedInstance().observe(
        PostgresEnumTypeHelper::PostgresEnumTypeHelperNotificationName(),
        [this](const auto &) { ++news; });
};

class PostgresEnumTypeHelperTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        const PostgresCluster &cluster = PostgresCluster::shared();
        cluster.createDatabase(QStringLiteral("enumerations"));
        cluster.psql(
            QStringLiteral(
                "CREATE SCHEMA crm; CREATE TYPE crm.mood AS ENUM ('b', 'a');"
                "CREATE TYPE mood AS ENUM ('it''s', 'NULL', '');"
                "ALTER TYPE crm.mood ADD VALUE 'between' BEFORE 'a';"
                "CREATE SCHEMA evil; GRANT USAGE ON SCHEMA evil TO PUBLIC;"
                "CREATE FUNCTION evil.version() RETURNS text LANGUAGE sql AS "
                "$$SELECT 'PostgreSQL 8.2.23'$$;"
                "CREATE ROLE ancient LOGIN; ALTER ROLE ancient SET search_path TO evil, pg_catalog;"
                "CREATE ROLE reader LOGIN; CREATE ROLE waiter LOGIN"),
            QStringLiteral("enumerations"));
    }
};

TEST_F(PostgresEnumTypeHelperTest, keepsTheLabelsInTheServersOrder)
{
    const auto details = login(QStringLiteral("reader"));
    EXPECT_EQ(cached(*details), QStringList(QStringLiteral("none")));
    Witness witness;
    load(*details);
    const QStringList expected{QStringLiteral("crm.mood=b,between,a"),
                               QStringLiteral("mood=it's,NULL,")};
    EXPECT_EQ(cached(*details), expected);
    EXPECT_EQ(cached(*login(QStringLiteral("reader"))), expected) << "one entry a connection";
    EXPECT_TRUE(DXWait::until([&] { return witness.news == 1; }));

    const auto types = PostgresEnumTypeHelper::enumTypesForDatabaseConnection(*details);
    EXPECT_EQ(QString::number(types->last().typeId),
              PostgresCluster::shared().psql(QStringLiteral("SELECT 'mood'::regtype::oid"),
                                             QStringLiteral("enumerations")));
}

TEST_F(PostgresEnumTypeHelperTest, asksAgainOnlyWhenItMust)
{
    const PostgresCluster &cluster = PostgresCluster::shared();
    cluster.createDatabase(QStringLiteral("changing"));
    const auto details = login(QStringLiteral("waiter"), QStringLiteral("changing"));
    Witness witness;
    PostgresEnumTypeHelper::requestEnumTypesForDatabaseConnection(*details);
    EXPECT_TRUE(DXWait::until([&] { return witness.news == 1; }));
    EXPECT_EQ(cached(*details), QStringList()) << "no types is a list, too";

    cluster.psql(QStringLiteral("CREATE TYPE added AS ENUM ('x')"), QStringLiteral("changing"));
    PostgresEnumTypeHelper::requestEnumTypesForDatabaseConnection(*details);
    EXPECT_EQ(cached(*details), QStringList());
    PostgresEnumTypeHelper::requestEnumTypesForDatabaseConnection(*details, RequiresUpdate::Yes);
    EXPECT_TRUE(DXWait::until([&] { return witness.news == 2; }));
    EXPECT_EQ(cached(*details), QStringList(QStringLiteral("added=x")));
}

TEST_F(PostgresEnumTypeHelperTest, takesFewConnectionsForManyDatabases)
{
    const PostgresCluster &cluster = PostgresCluster::shared();
    cluster.psql(QStringLiteral("CREATE ROLE modest LOGIN CONNECTION LIMIT 6"));
    QList<std::shared_ptr<PostgresDatabaseConnectionDetails>> databases;
    for (int number = 0; number < 12; ++number) {
        const QString name = QStringLiteral("many_%1").arg(number);
        cluster.createDatabase(name);
        databases.append(login(QStringLiteral("modest"), name));
    }
    const Witness witness;
    for (const auto &details : std::as_const(databases))
        PostgresEnumTypeHelper::requestEnumTypesForDatabaseConnection(*details);
    EXPECT_TRUE(DXWait::until([&] { return witness.news + witness.lines().size() == 12; }));
    EXPECT_EQ(witness.lines(), QStringList());
    for (const auto &details : std::as_const(databases))
        EXPECT_EQ(cached(*details), QStringList());
}

TEST_F(PostgresEnumTypeHelperTest, keepsWhatItHasWhenItCannotLoad)
{
    const auto details = login(QStringLiteral("reader"));
    load(*details);
    const QStringList before = cached(*details);
    DabroDatabaseConnectionPool::disconnectAll(*details);
    PostgresCluster::shared().psql(QStringLiteral("ALTER ROLE reader NOLOGIN"));
    const Witness witness;
    load(*details);
    EXPECT_EQ(cached(*details), before);
    ASSERT_EQ(witness.lines().size(), 1);
    EXPECT_TRUE(witness.lines().first().startsWith(
        QStringLiteral("List_EnumDetails had no entries. Error: ")));
}

TEST_F(PostgresEnumTypeHelperTest, leavesServersWithoutEnumerationsAlone)
{
    const auto details = login(QStringLiteral("ancient"));
    const Witness witness;
    load(*details);
    EXPECT_EQ(cached(*details), QStringList(QStringLiteral("none")));
    EXPECT_EQ(witness.lines(),
              QStringList(
                  QStringLiteral("Database version is older than 8.3. Not loading enum details.")));
}

} // namespace
