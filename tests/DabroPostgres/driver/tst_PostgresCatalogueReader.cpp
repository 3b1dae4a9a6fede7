// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DatabaseResultSet.h"
#include "driver/PostgresCatalogueReader.h"
#include "driver/PostgresDatabaseClient.h"
#include "support/Background.h"
#include "support/PostgresCluster.h"

#include <gmock/gmock.h>

using testing::HasSubstr;

namespace
{

class PostgresCatalogueReaderTest : public testing::Test
{
protected:
    void SetUp() override
    {
        const PostgresCluster &cluster = PostgresCluster::shared();
        details->setHost(cluster.socketFolder());
        details->setPort(static_cast<quint16>(cluster.port()));
        details->setUsername(QStringLiteral("dba"));
        details->setDatabase(QStringLiteral("postgres"));
        client.setDatabaseConnectionDetails(details);
        inBackground([this] {
            DXError error;
            ASSERT_TRUE(client.connect(&error)) << qPrintable(error.description());
            client.executeNonQuery(
                QStringLiteral("CREATE TEMP TABLE kept (id int); "
                               "DROP SEQUENCE IF EXISTS counter; CREATE SEQUENCE counter"),
                &error);
            ASSERT_FALSE(error) << qPrintable(error.description());
        });
    }

    /// The first cells of the rows, or the failure.
    QString read(const PostgresCatalogueQuery &query,
                 PostgresCatalogueReader::Access access = PostgresCatalogueReader::Access::ReadOnly)
    {
        QStringList cells;
        DXError error;
        inBackground([&] {
            PostgresCatalogueReader::read(
                client, query,
                [&](const DatabaseResultSet &row) {
                    cells.append(row.stringForColumnIndex(0).toText());
                },
                &error, access);
        });
        return error ? error.description() : cells.join(u' ');
    }

    std::shared_ptr<PostgresDatabaseConnectionDetails> details =
        std::make_shared<PostgresDatabaseConnectionDetails>();
    PostgresDatabaseClient client;
};

TEST_F(PostgresCatalogueReaderTest, readsOneStatementThatChangesNothing)
{
    const struct
    {
        const char *name;
        const char *answer;
    } cases[] = {
        {"pg_class", "1"},
        {"no such table", ""},
        {"'; DROP TABLE kept; --", "cannot insert multiple commands"},
        {"'; COMMIT; DROP TABLE kept; SELECT '", "cannot insert multiple commands"},
        {"' OR pg_catalog.nextval('counter') > 0 OR 't", "cannot execute nextval()"},
        {"' OR pg_catalog.set_config('transaction_read_only', 'off', false) = 'off' OR 't",
         "must be set before any query"},
        {"' || pg_catalog.set_config('search_path', 'evil', false) || '", ""},
        {"quo'te", "syntax error"},
    };
    const auto query = QStringLiteral(
        "SELECT 1 FROM pg_catalog.pg_class WHERE relname = '%1' AND relnamespace = 11");
    for (const auto &entry : cases) {
        const QString answer = read(query.arg(QLatin1String(entry.name)));
        EXPECT_THAT(answer.toStdString(), HasSubstr(entry.answer)) << entry.name;
        EXPECT_EQ(read(QStringLiteral("SELECT count(*) FROM kept")), QStringLiteral("0"))
            << entry.name;
        EXPECT_EQ(read(QStringLiteral("SHOW search_path")), QStringLiteral("\"$user\", public"))
            << entry.name;
        EXPECT_FALSE(client.isInTransaction()) << entry.name;
    }
    EXPECT_THAT(read(QString::fromUtf16(u"SELECT '\0'", 10)).toStdString(), HasSubstr("U+0000"));
}

TEST_F(PostgresCatalogueReaderTest, writesOnRequest)
{
    const auto query = QStringLiteral("SELECT pg_catalog.nextval('counter')");
    EXPECT_EQ(read(query, PostgresCatalogueReader::Access::Writing), QStringLiteral("1"));
    EXPECT_EQ(read(query, PostgresCatalogueReader::Access::Writing), QStringLiteral("2"));
}

TEST_F(PostgresCatalogueReaderTest, leavesAnOpenTransactionAsItWas)
{
    const auto execute = [this](const QString &text) {
        DXError error;
        inBackground([&] { client.executeNonQuery(text, &error); });
        EXPECT_FALSE(error) << qPrintable(error.description());
    };
    execute(QStringLiteral("BEGIN; INSERT INTO kept VALUES (7)"));
    EXPECT_EQ(read(QStringLiteral("SELECT id FROM kept")), QStringLiteral("7"));
    EXPECT_THAT(read(QStringLiteral("SELECT 1/0")).toStdString(), HasSubstr("division by zero"));
    EXPECT_THAT(read(QStringLiteral("SELECT pg_catalog.nextval('counter')")).toStdString(),
                HasSubstr("cannot execute nextval()"));
    execute(QStringLiteral("INSERT INTO kept VALUES (8); COMMIT"));
    EXPECT_EQ(read(QStringLiteral("SELECT id FROM kept ORDER BY id")), QStringLiteral("7 8"));
}

// A plain query goes without a transaction of its own, and stays within one of the caller's.
TEST_F(PostgresCatalogueReaderTest, readsPlainQueriesAsTheyAre)
{
    const auto plain = [](const char *text) {
        return PostgresCatalogueQuery::plain(QString::fromLatin1(text));
    };
    EXPECT_EQ(read(plain("SELECT pg_catalog.current_setting('transaction_read_only')")),
              QStringLiteral("off"));
    EXPECT_EQ(read(QStringLiteral("SELECT pg_catalog.current_setting('transaction_read_only')")),
              QStringLiteral("on"));
    EXPECT_THAT(read(plain("SELECT 1/0")).toStdString(), HasSubstr("division by zero"));
    EXPECT_EQ(read(plain("SELECT n FROM pg_catalog.generate_series(1, 3) AS n")),
              QStringLiteral("1 2 3"));
    inBackground([this] { client.beginTransaction(nullptr); });
    EXPECT_THAT(read(plain("SELECT 1/0")).toStdString(), HasSubstr("division by zero"));
    EXPECT_EQ(read(plain("SELECT 1")), QStringLiteral("1")) << "the transaction goes on";
    client.disconnect();
    EXPECT_THAT(read(plain("SELECT 1")).toStdString(), HasSubstr("connection is closed"));
}

TEST_F(PostgresCatalogueReaderTest, tellsOnceOfAServerThatDied)
{
    EXPECT_THAT(
        read(QStringLiteral("SELECT pg_catalog.pg_terminate_backend(pg_catalog.pg_backend_pid())"))
            .toStdString(),
        HasSubstr("terminating connection"));
    EXPECT_FALSE(client.isAlive());
    EXPECT_NE(read(QStringLiteral("SELECT 1")), QStringLiteral("1"));
}

} // namespace
