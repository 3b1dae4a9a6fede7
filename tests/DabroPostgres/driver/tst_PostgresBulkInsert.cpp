// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXLogHelper.h"
#include "driver/PostgresDatabaseClient.h"
#include "support/Background.h"
#include "support/PostgresCluster.h"
#include "support/PrintQt.h"

#include <gmock/gmock.h>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using Rows = QList<QList<DXValue>>;

// Rows 1 to count, with a text each.
Rows numberedRows(int count)
{
    Rows rows;
    for (int row = 1; row <= count; ++row)
        rows += {qint64(row), u"row %1"_qs.arg(row)};
    return rows;
}

class PostgresBulkInsert : public testing::Test
{
protected:
    void SetUp() override
    {
        const auto details = std::make_shared<PostgresDatabaseConnectionDetails>();
        details->setHost(cluster().socketFolder());
        details->setPort(cluster().port());
        details->setUsername(PostgresCluster::superuser());
        details->setDatabase(u"postgres"_qs);
        client.setDatabaseConnectionDetails(details);
        ASSERT_TRUE(inBackground([this] { return client.connect(&error); }))
            << qPrintable(error.description());
        // The trigger notes each statement that arrives and how many rows it brings.
        cluster().psql(uR"(
            DROP SCHEMA IF EXISTS sales CASCADE;
            CREATE SCHEMA sales;
            CREATE TABLE sales."Orders" (id integer UNIQUE DEFERRABLE INITIALLY DEFERRED,
                                         "Name" text, amount numeric);
            CREATE TABLE sales.batches (id serial, rows bigint, query text);
            CREATE FUNCTION sales.note() RETURNS trigger LANGUAGE plpgsql AS $$
            BEGIN
                INSERT INTO sales.batches (rows, query) SELECT count(*), current_query() FROM fresh;
                RETURN NULL;
            END $$;
            CREATE TRIGGER note AFTER INSERT ON sales."Orders" REFERENCING NEW TABLE AS fresh
                FOR EACH STATEMENT EXECUTE FUNCTION sales.note();)"_qs);
    }

    static PostgresCluster &cluster() { return PostgresCluster::shared(); }
    static QString storedRows()
    {
        return cluster().psql(u"SELECT count(*) FROM sales.\"Orders\""_qs);
    }

    bool insert(const DabroDatabaseClient::BulkInsert &bulk,
                const DabroDatabaseClient::BulkInsertProgress &progress, DXError *slot)
    {
        return inBackground([&] { return client.bulkInsert(bulk, progress, slot); });
    }

    bool insert(const Rows &rows, const DabroDatabaseClient::BulkInsertProgress &progress = {})
    {
        error = {};
        return insert({.rows = rows,
                       .tableName = u"sales.Orders"_qs,
                       .columnNames = {u"id"_qs, u"Name"_qs},
                       .columnTypes = {u"integer"_qs, u"text"_qs}},
                      progress, &error);
    }

    // That the transaction is over, nothing of it was kept, and the next import works.
    void expectRolledBackAndUsable()
    {
        EXPECT_FALSE(client.isInTransaction());
        EXPECT_EQ(storedRows(), u"0"_qs);
        EXPECT_TRUE(insert(numberedRows(3))) << qPrintable(error.description());
        EXPECT_EQ(storedRows(), u"3"_qs);
    }

    QString terminateBackend() const
    {
        return cluster().psql(
            u"SELECT pg_terminate_backend(pid, 30000) FROM pg_stat_activity "
            "WHERE backend_type = 'client backend' AND pid <> pg_backend_pid()"_qs);
    }

    PostgresDatabaseClient client;
    DXError error;
};

TEST_F(PostgresBulkInsert, SendsBatchesOf501Rows)
{
    const std::pair<int, QString> cases[] = {
        {0, u""_qs},         {1, u"1"_qs},           {500, u"500"_qs},       {501, u"501"_qs},
        {502, u"501\n1"_qs}, {1000, u"501\n499"_qs}, {1002, u"501\n501"_qs},
    };
    for (const auto &[count, batches] : cases) {
        EXPECT_TRUE(insert(numberedRows(count))) << qPrintable(error.description());
        EXPECT_TRUE(error.isEmpty());
        EXPECT_EQ(cluster().psql(u"SELECT rows FROM sales.batches ORDER BY id; "
                                 "TRUNCATE sales.batches, sales.\"Orders\""_qs),
                  batches);
    }
}

TEST_F(PostgresBulkInsert, SendsTheStatementAsWritten)
{
    ASSERT_TRUE(insert({{qint64(1), u"it's"_qs}, {u"1,002"_qs, DXValue()}}));
    EXPECT_EQ(cluster().psql(u"SELECT replace(query, E'\\r\\n', '<CRLF>') FROM sales.batches"_qs),
              u"INSERT INTO sales.\"Orders\" (id,\"Name\") VALUES<CRLF>"
              "(1,'it''s'),<CRLF>(1002,NULL);"_qs);
}

TEST_F(PostgresBulkInsert, KeepsTheValues)
{
    const Rows rows = {
        {u"1,234"_qs, u"größe 😀\n\\"_qs, u"$1,234.50"_qs},
        {qint64(2), u"null"_qs, *DXDecimal::fromString("12345678901234567890.10")},
        {qint64(3), qint64(77), *DXDecimal::fromString("NaN")},
        {DXValue(), u""_qs, u"null"_qs},
    };
    ASSERT_TRUE(insert({.rows = rows,
                        .tableName = u"postgres.sales.Orders"_qs,
                        .columnNames = {u"id"_qs, u"Name"_qs, u"amount"_qs},
                        .columnTypes = {u"integer"_qs, u"text"_qs, u"numeric"_qs}},
                       {}, &error))
        << qPrintable(error.description());
    EXPECT_EQ(cluster().psql(u"SELECT id, \"Name\", amount FROM sales.\"Orders\" ORDER BY 1"_qs),
              u"2||12345678901234567890.10\n3|77|NaN\n1234|größe 😀\n\\|1234.50\n||"_qs);
}

TEST_F(PostgresBulkInsert, TellsTheProgressBeforeEachRow)
{
    QList<double> told;
    ASSERT_TRUE(insert(numberedRows(8), [&](double percent) {
        told += percent;
        return true;
    }));
    EXPECT_THAT(told, ElementsAre(0, 12.5, 25, 37.5, 50, 62.5, 75, 87.5));
}

TEST_F(PostgresBulkInsert, StopsWhenTold)
{
    for (const int stopAt : {0, 700}) {
        int told = 0;
        EXPECT_FALSE(insert(numberedRows(1000), [&](double) { return told++ < stopAt; }));
        EXPECT_EQ(told, stopAt + 1);
        EXPECT_EQ(error, DXError(u""_qs, 0, u"The import was stopped; nothing was inserted."_qs));
        expectRolledBackAndUsable();
        cluster().psql(u"TRUNCATE sales.\"Orders\""_qs);
    }
}

TEST_F(PostgresBulkInsert, RollsBackWhenABatchFails)
{
    QStringList log;
    const auto observer =
        DXLogHelper::sharedInstance().observeLines([&](const QString &line) { log += line; });
    Rows rows = numberedRows(1500);
    rows[600][0] = u""_qs;
    int told = 0;
    EXPECT_FALSE(insert(rows, [&](double) { return ++told > 0; }));
    EXPECT_EQ(told, 1002) << "rows are read after the failing batch";
    EXPECT_TRUE(error.domain().isEmpty());
    EXPECT_THAT(error.description().toStdString(),
                testing::MatchesRegex("Failed to perform insert with error: ERROR:  syntax error "
                                      "at or near \",\"\n(.|\n)*"));
    ASSERT_EQ(log.size(), 2);
    EXPECT_TRUE(log[0].startsWith(u"INSERT command failed with error: ERROR:  syntax error"_qs));
    EXPECT_TRUE(log[0].endsWith(u"\n."_qs));
    EXPECT_TRUE(log[1].startsWith(
        u"Insert was:\r\nINSERT INTO sales.\"Orders\" (id,\"Name\") VALUES\r\n(502,'row 502')"_qs));
    EXPECT_TRUE(log[1].endsWith(u"(1002,'row 1002');"_qs));
    expectRolledBackAndUsable();
}

TEST_F(PostgresBulkInsert, RollsBackOnARowThatDoesNotFit)
{
    Rows rows = numberedRows(1000);
    rows[800].removeLast();
    EXPECT_FALSE(insert(rows));
    EXPECT_TRUE(error.description().startsWith(u"Row 801 cannot be inserted: "_qs));
    expectRolledBackAndUsable();
}

TEST_F(PostgresBulkInsert, WantsATypeForEachColumn)
{
    const Rows rows = numberedRows(1);
    EXPECT_FALSE(insert({.rows = rows,
                         .tableName = u"sales.%1Orders"_qs,
                         .columnNames = {u"id"_qs, u"Name"_qs},
                         .columnTypes = {u"integer"_qs}},
                        {}, &error));
    EXPECT_EQ(error.description(),
              u"The import into sales.%1Orders has 2 column names and 1 column "
              "types. Give each column one type."_qs);
}

TEST_F(PostgresBulkInsert, ReportsAFailingEnd)
{
    EXPECT_FALSE(insert({{qint64(1), u"a"_qs}, {qint64(1), u"b"_qs}}));
    EXPECT_EQ(error, DXError(u""_qs, 0, u"Failed to end import transaction."_qs));
    expectRolledBackAndUsable();
}

TEST_F(PostgresBulkInsert, SendsNothingWithoutATransaction)
{
    const auto expectRefused = [this] {
        const auto neverTold = [](double) {
            ADD_FAILURE() << "a row is read";
            return true;
        };
        EXPECT_FALSE(insert(numberedRows(1), neverTold));
        EXPECT_EQ(error, DXError(u""_qs, 0, u"Failed to create import transaction."_qs));
    };
    terminateBackend();
    expectRefused();
    inBackground([this] { client.disconnect(); });
    expectRefused();
    EXPECT_EQ(storedRows(), u"0"_qs);
}

TEST_F(PostgresBulkInsert, ReportsABrokenConnectionOnce)
{
    QStringList log;
    const auto observer =
        DXLogHelper::sharedInstance().observeLines([&](const QString &line) { log += line; });
    int told = 0;
    EXPECT_FALSE(insert(numberedRows(1200), [&](double) {
        if (++told == 600)
            terminateBackend();
        return true;
    }));
    EXPECT_TRUE(error.description().startsWith(u"Failed to perform insert with error: "_qs));
    EXPECT_EQ(log.size(), 2);
    EXPECT_THAT(log.filter(u"END command"_qs), IsEmpty());
    EXPECT_FALSE(client.isConnected());
    EXPECT_EQ(storedRows(), u"0"_qs);
}

TEST_F(PostgresBulkInsert, FailsWithoutAnErrorSlot)
{
    const Rows rows = {{u"x"_qs}};
    EXPECT_FALSE(insert({.rows = rows,
                         .tableName = u"sales.missing"_qs,
                         .columnNames = {u"id"_qs},
                         .columnTypes = {u"text"_qs}},
                        {}, nullptr));
    expectRolledBackAndUsable();
}

TEST_F(PostgresBulkInsert, QuotesTextsOnTheConnection)
{
    const std::pair<DXValue, DXValue> cases[] = {
        {DXValue(u"it's ä"_qs), DXValue(u"'it''s ä'"_qs)},
        {DXValue(u"a\\b"_qs), DXValue(u" E'a\\\\b'"_qs)},
        {DXValue(u"null"_qs), DXValue(u"'null'"_qs)},
        {DXValue(u""_qs), DXValue(u""_qs)},
        {DXValue(qint64(5)), DXValue(qint64(5))},
        {DXValue(), DXValue()},
    };
    for (const auto &[value, expected] : cases)
        EXPECT_EQ(client.databaseProviderEscape(value), expected);
}

} // namespace
