// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresDefaultSchemaHelper.h"

#include "core/DXLogHelper.h"
#include "driver/PostgresDatabaseConnectionDetails.h"
#include "driver/PostgresSystemDatabaseQueries.h"
#include "support/Background.h"
#include "support/PostgresCluster.h"
#include "support/PrintQt.h"

#include <gmock/gmock.h>
#include <mutex>
#include <thread>
#include <vector>

namespace
{

/// What the helper told the log since this object was made.
class Log
{
public:
    QStringList lines() const
    {
        const std::lock_guard lock(m_mutex);
        return m_lines;
    }
    qsizetype loads() const
    {
        return lines().count(
            QStringLiteral("PostgresDefaultSchemaHelper is loading the default schema."));
    }
    QList<std::pair<DXError, QVariantMap>> errors() const
    {
        const std::lock_guard lock(m_mutex);
        return m_errors;
    }

private:
    mutable std::mutex m_mutex;
    QStringList m_lines;
    QList<std::pair<DXError, QVariantMap>> m_errors;
    std::shared_ptr<void> m_lineObserver =
        DXLogHelper::sharedInstance().observeLines([this](const QString &line) {
            const std::lock_guard lock(m_mutex);
            if (line.contains(QLatin1String("efault schema"))
                || line.contains(QLatin1String("DefaultSchema")))
                m_lines.append(line);
        });
    std::shared_ptr<void> m_errorObserver = DXLogHelper::sharedInstance().observeErrors(
        [this](const DXError &error, const QVariantMap &details) {
            const std::lock_guard lock(m_mutex);
            m_errors.append({error, details});
        });
};

std::shared_ptr<PostgresDatabaseConnectionDetails> login(const QString &user)
{
    auto details = std::make_shared<PostgresDatabaseConnectionDetails>();
    details->setHost(PostgresCluster::shared().socketFolder());
    details->setPort(PostgresCluster::shared().port());
    details->setUsername(user);
    details->setDatabase(QStringLiteral("schemas"));
    return details;
}

QString schemaOf(const DabroDBC &details)
{
    return inBackground(
        [&] { return PostgresDefaultSchemaHelper::sharedInstance().schemaForDBC(details); });
}

class PostgresDefaultSchemaHelperTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        const PostgresCluster &cluster = PostgresCluster::shared();
        cluster.createDatabase(QStringLiteral("schemas"));
        cluster.psql(
            QStringLiteral("CREATE SCHEMA \"Odd, Name\"; CREATE SCHEMA own_one; CREATE SCHEMA evil;"
                           "GRANT USAGE ON SCHEMA \"Odd, Name\", own_one, evil TO PUBLIC;"
                           "CREATE FUNCTION evil.current_schema() RETURNS name LANGUAGE sql AS "
                           "$$SELECT 'hijacked'::name$$;"
                           "CREATE ROLE own_one LOGIN; CREATE ROLE plain LOGIN;"
                           "CREATE ROLE odd LOGIN; CREATE ROLE nowhere LOGIN;"
                           "CREATE ROLE later LOGIN; CREATE ROLE victim LOGIN;"
                           "CREATE ROLE busy LOGIN; CREATE ROLE busier LOGIN;"
                           "ALTER ROLE odd SET search_path TO \"Odd, Name\", public;"
                           "ALTER ROLE nowhere SET search_path TO missing;"
                           "ALTER ROLE later SET search_path TO missing, own_one;"
                           "ALTER ROLE victim SET search_path TO evil, pg_catalog;"),
            QStringLiteral("schemas"));
    }
};

TEST_F(PostgresDefaultSchemaHelperTest, followsTheSearchPathOfTheUser)
{
    for (const auto &[user, schema] : std::initializer_list<std::pair<const char *, const char *>>{
             {"plain", "public"},
             {"own_one", "own_one"},
             {"odd", "Odd, Name"},
             {"later", "own_one"},
             {"victim", "evil"},
         })
        EXPECT_EQ(schemaOf(*login(QString::fromLatin1(user))), QString::fromLatin1(schema)) << user;

    const auto preferring = login(QStringLiteral("plain"));
    preferring->setConnectionSessionPreferences(
        {{QStringLiteral("search_path"), QStringLiteral("'own_one'")}});
    preferring->setHost(preferring->host() + QStringLiteral("/."));
    EXPECT_EQ(schemaOf(*preferring), QStringLiteral("own_one"));
}

TEST_F(PostgresDefaultSchemaHelperTest, asksTheServerOnce)
{
    const auto details = login(QStringLiteral("busier"));
    const QString key = details->description();
    const Log log;
    EXPECT_EQ(schemaOf(*details), QStringLiteral("public"));
    EXPECT_EQ(schemaOf(*details), QStringLiteral("public"));
    EXPECT_EQ(
        log.lines(),
        QStringList({
            QStringLiteral("PostgresDefaultSchemaHelper finding schema for ") + key,
            QStringLiteral("PostgresDefaultSchemaHelper is loading the default schema."),
            QStringLiteral("PostgresDefaultSchemaHelper found a row. Object 1 is: public"),
            QStringLiteral("PostgresDefaultSchemaHelper schema was found for %1 (public)").arg(key),
            QStringLiteral("PostgresDefaultSchemaHelper finding schema for ") + key,
            QStringLiteral("PostgresDefaultSchemaHelper schema was cached for %1 (public)")
                .arg(key),
        }));
    EXPECT_TRUE(log.errors().isEmpty());
}

TEST_F(PostgresDefaultSchemaHelperTest, assumesPublicAndRemembersItWhenThereIsNone)
{
    const auto details = login(QStringLiteral("nowhere"));
    const Log log;
    EXPECT_EQ(schemaOf(*details), QStringLiteral("public"));
    EXPECT_EQ(schemaOf(*details), QStringLiteral("public"));
    EXPECT_EQ(log.loads(), 1);
    EXPECT_TRUE(log.lines().contains(
        QStringLiteral("ERROR: Failed to find the default schema for user. Assuming public.")));
    ASSERT_EQ(log.errors().size(), 1);
    EXPECT_EQ(log.errors().first().first.domain(),
              QStringLiteral("postgres.schemaForDBC.nilResult"));
    EXPECT_TRUE(log.errors().first().second.isEmpty());
}

TEST_F(PostgresDefaultSchemaHelperTest, assumesPublicWhenTheServerCannotBeAsked)
{
    const auto details = login(QStringLiteral("plain"));
    details->setHost(QStringLiteral("/nonexistent"));
    const Log log;
    EXPECT_EQ(schemaOf(*details), QStringLiteral("public"));
    EXPECT_EQ(schemaOf(*details), QStringLiteral("public"));
    const auto errors = log.errors();
    ASSERT_EQ(errors.size(), 2);
    const auto &[failed, query] = errors[0];
    EXPECT_EQ(failed.domain(), QStringLiteral("postgres.schemaForDBC"));
    EXPECT_EQ(query.value(QStringLiteral("Query")).toString(),
              PostgresSystemDatabaseQueries::queryByTitle(
                  QStringLiteral("General_FindDefaultUserSchema")));
    const auto &[assumed, nothing] = errors[1];
    EXPECT_EQ(assumed.domain(), QStringLiteral("postgres.schemaForDBC.nilResult"));
    EXPECT_EQ(assumed.description(), failed.description());
    EXPECT_TRUE(nothing.isEmpty());
}

TEST_F(PostgresDefaultSchemaHelperTest, asksOnceForManyThreads)
{
    const auto details = login(QStringLiteral("busy"));
    const Log log;
    inBackground([&] {
        std::vector<std::jthread> threads;
        threads.reserve(8);
        for (int thread = 0; thread < 8; ++thread) {
            threads.emplace_back([&] {
                EXPECT_EQ(PostgresDefaultSchemaHelper::sharedInstance().schemaForDBC(*details),
                          QStringLiteral("public"));
            });
        }
    });
    EXPECT_EQ(log.loads(), 1);
    EXPECT_EQ(log.errors().size(), 0);
}

} // namespace
