// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXQueryResult.h"
#include "core/DXLogHelper.h"
#include "driver/PostgresDatabaseClient.h"
#include "driver/PostgresDatabaseResultSet.h"
#include "support/Background.h"
#include "support/PostgresCluster.h"

#include <gtest/gtest.h>

namespace
{

// Keeps the numbers in which rows were handed over.
class RecordingResult final : public DXQueryResult
{
public:
    void incrementTotalResultCountBy(qint64 count) override
    {
        DXQueryResult::incrementTotalResultCountBy(count);
        handOvers.append(count);
    }
    QList<qint64> handOvers;
};

struct Batch
{
    RecordingResult result;
    DXError error;
    int blocks = 0;
};

class QueryExecution : public testing::Test
{
protected:
    void SetUp() override
    {
        const PostgresCluster &cluster = PostgresCluster::shared();
        auto details = std::make_shared<PostgresDatabaseConnectionDetails>();
        details->setHost(cluster.socketFolder());
        details->setPort(static_cast<quint16>(cluster.port()));
        details->setUsername(QStringLiteral("dba"));
        details->setDatabase(QStringLiteral("postgres"));
        client.setDatabaseConnectionDetails(details);
        DXError error;
        inBackground(
            [&] { ASSERT_TRUE(client.connect(&error)) << qPrintable(error.description()); });
    }

    // Runs the statements as a batch whose first one stands at 10 in its editor.
    void run(const QStringList &statements, Batch &batch)
    {
        QList<DXQueryDetails> details;
        qsizetype at = 10;
        for (const QString &statement : statements) {
            details.append({statement, details.size(), {at, statement.size()}});
            at += statement.size();
        }
        inBackground([&] {
            client.executeQueryDetails(
                details, batch.result, [&batch] { ++batch.blocks; }, &batch.error);
        });
    }

    QStringList messages(const QStringList &statements)
    {
        Batch batch;
        run(statements, batch);
        QStringList texts;
        const auto resultSets = batch.result.resultSets();
        for (const auto &details : resultSets) {
            EXPECT_TRUE(details->isFinished());
            EXPECT_EQ(details->messages().size(), 1);
            texts.append(details->messages().value(0).text);
        }
        EXPECT_EQ(batch.result.messagesCount(), texts.size());
        EXPECT_EQ(batch.blocks, texts.size());
        return texts;
    }

    PostgresDatabaseClient client;
};

TEST_F(QueryExecution, leavesAMessageForEachStatement)
{
    const auto text = [](const char *utf8) { return QString::fromUtf8(utf8); };
    struct Case
    {
        QStringList statements;
        QStringList messages;
    };
    const std::initializer_list<Case> cases{
        {{text("CREATE TEMP TABLE t (a int);")}, {text("Command completed successfully.")}},
        {{text("INSERT INTO t SELECT generate_series(1,3)")},
         {text("Command completed successfully. (3 rows affected).")}},
        {{text("SELECT 1;"), text("UPDATE t SET a=1")},
         {text("Command completed successfully. (1 result)."),
          text("Command completed successfully. (3 rows affected).")}},
        {{text("SELECT a FROM t WHERE false")},
         {text("Command completed successfully. (0 rows affected).")}},
        {{text("SELECT a FROM t;"), text("SELECT FROM t")},
         {text("Command completed successfully. (3 results)."),
          text("Command completed successfully. (3 results).")}},
        {{text("-- nothing\n")}, {text("Command completed successfully.")}},
        {{text("DELETE FROM t WHERE a = 9;")},
         {text("Command completed successfully. (0 rows affected).")}},
        {{text("LISTEN news")}, {text("Command completed successfully.")}},
        {{text("SELECT 1;"), text("SELECT 1/0;"), text("SELECT 2")},
         {text("Command completed successfully. (1 result)."), text("ERROR:  division by zero.")}},
        {{text("SELECT 1;"), text("COPY t TO STDOUT;"), text("SELECT 2")},
         {text("Command completed successfully. (1 result)."),
          text("The rows of COPY ... TO STDOUT were read and dropped: they cannot be shown here. "
               "Run "
               "the query itself, or use COPY ... TO a file on the server."),
          text("Command completed successfully. (1 result).")}},
    };
    for (const Case &oneCase : cases)
        EXPECT_EQ(messages(oneCase.statements), oneCase.messages)
            << qPrintable(oneCase.statements.join(QString()));

    const QStringList refused = messages({text("COPY t FROM STDIN;")});
    ASSERT_EQ(refused.size(), 1);
    EXPECT_TRUE(refused[0].startsWith(QLatin1String("ERROR:  COPY from stdin failed")));
    EXPECT_EQ(messages({text("SELECT 1")}).size(), 1);
}

TEST_F(QueryExecution, tellsACommitThatWasNone)
{
    const auto text = [](const char *utf8) { return QString::fromUtf8(utf8); };
    struct Case
    {
        const char *before;
        const char *statement;
        bool hasRolledBackInstead;
        bool isInTransaction = false;
    };
    for (const Case &each : {
             Case{"BEGIN; SELECT 1 / 0", "COMMIT", true},
             {"BEGIN; SELECT 1 / 0", "/* at last */ end work;", true},
             {"BEGIN; SELECT 1 / 0", "Commit and chain", true, true},
             {"BEGIN; SELECT 1 / 0", "PREPARE TRANSACTION 'later'", true},
             {"BEGIN; SELECT 1 / 0", "ROLLBACK", false},
             {"BEGIN; SELECT 1 / 0", "ABORT", false},
             {"BEGIN", "COMMIT", false},
             {"SELECT 1", "COMMIT", false},
             {"BEGIN; SAVEPOINT s; SELECT 1 / 0", "ROLLBACK TO s", false, true},
         }) {
        SCOPED_TRACE(std::string(each.before) + "; " + each.statement);
        messages({text("ROLLBACK")});
        messages({text(each.before)});
        EXPECT_EQ(client.hasFailedTransaction(), QByteArrayView(each.before).endsWith("1 / 0"));
        Batch batch;
        run({text(each.statement)}, batch);
        ASSERT_EQ(batch.result.resultSets().size(), 1);
        const auto details = batch.result.resultSets().first();
        EXPECT_EQ(details->hasRolledBackInstead(), each.hasRolledBackInstead);
        ASSERT_EQ(details->messages().size(), 1);
        EXPECT_EQ(details->messages().first().text, text("Command completed successfully."));
        EXPECT_FALSE(client.hasFailedTransaction());
        EXPECT_EQ(client.isInTransaction(), each.isInTransaction);
    }
}

TEST_F(QueryExecution, handsRowsOverInHundreds)
{
    Batch batch;
    run({QStringLiteral("SELECT i, i::text || '!' FROM generate_series(0, 249) AS i;"),
         QStringLiteral("SELECT 1 WHERE false;"),
         QStringLiteral("SELECT NULL::int AS n, 'é' AS \"T\"")},
        batch);
    EXPECT_EQ(batch.result.handOvers, (QList<qint64>{0, 100, 100, 50, 0, 1}));
    EXPECT_EQ(batch.result.totalResultCount(), 251);
    const auto resultSets = batch.result.resultSets();
    ASSERT_EQ(resultSets.size(), 3);
    EXPECT_EQ(resultSets[0]->rows()->rowCount(), 250);
    for (qsizetype row = 0; row < 250; ++row) {
        EXPECT_EQ(resultSets[0]->value(row, 0), DXValue(row));
        EXPECT_EQ(resultSets[0]->value(row, 1), DXValue(QString::number(row) + QLatin1Char('!')));
    }
    EXPECT_EQ(resultSets[1]->columnNames(), QStringList{QStringLiteral("?column?")});
    EXPECT_TRUE(resultSets[2]->value(0, 0).isNull());
    EXPECT_EQ(resultSets[2]->value(0, 1), DXValue(QStringLiteral("é")));
    EXPECT_EQ(resultSets[2]->columnNames(),
              (QStringList{QStringLiteral("n"), QStringLiteral("T")}));
    EXPECT_EQ(resultSets[2]->calculatedLineNumber(), 2);
}

TEST_F(QueryExecution, marksWhereAStatementFailed)
{
    struct Case
    {
        QStringList statements;
        const char *marked;
    };
    const QString wide = QStringLiteral("SELECT '\U0001F418漢字', ");
    const std::initializer_list<Case> cases{
        {{QStringLiteral("SELECT 1;\n"), QStringLiteral("select * fro t;")}, "fro"},
        {{QStringLiteral("SELECT 1;\n"), QStringLiteral("\tSELECT\tnope FROM pg_class")}, "nope"},
        {{wide + QStringLiteral("nope")}, "nope"},
        {{QStringLiteral("COPY (SELECT 1) TO STDOUT;\n"), QStringLiteral("SELECT nope")}, "nope"},
        {{QStringLiteral("SELECT ") + QStringLiteral("1, ").repeated(200)
          + QStringLiteral("nope, 2")},
         "nope,"},
    };
    for (const Case &oneCase : cases) {
        Batch batch;
        run(oneCase.statements, batch);
        const auto ranges = batch.error.queryErrorRanges();
        ASSERT_EQ(ranges.size(), 1) << qPrintable(batch.error.description());
        EXPECT_EQ(oneCase.statements.join(QString()).mid(ranges[0].location - 10, ranges[0].length),
                  QString::fromUtf8(oneCase.marked));
        const auto last = batch.result.resultSets().last()->messages();
        EXPECT_EQ(last.value(0).color, DXMessageColor::Red);
    }
    Batch inside;
    run({QStringLiteral("DO $$BEGIN EXECUTE 'SELECT nope'; END$$")}, inside);
    EXPECT_TRUE(inside.error.description().contains(QLatin1String("LINE 1: SELECT nope")));
    EXPECT_TRUE(inside.error.queryErrorRanges().isEmpty());
}

TEST_F(QueryExecution, refusesWhatTheServerCannotTake)
{
    Batch batch;
    run({QStringLiteral("SELECT '") + QChar(QChar::Null) + QStringLiteral("'")}, batch);
    EXPECT_TRUE(
        batch.error.description().contains(QLatin1String("NUL character (U+0000) at position 9")));
    EXPECT_EQ(batch.result.resultSets().size(), 1);

    client.disconnect();
    QString logged;
    const auto observer = DXLogHelper::sharedInstance().observeLines(
        [&logged](const QString &line) { logged = line; });
    inBackground([&] {
        DXError error;
        EXPECT_FALSE(client.executeQuery(QStringLiteral("SELECT 1"), &error));
        EXPECT_FALSE(error);
        EXPECT_EQ(logged, QStringLiteral("Closed"));
        EXPECT_TRUE(client.executeNonQuery(QStringLiteral("SELECT 1"), &error));
    });
}

TEST_F(QueryExecution, tellsOfNotificationsThatCameIn)
{
    QStringList notices;
    client.disconnect();
    client.setNoticeHandler(
        [&notices](const QString &notice) { notices.append(notice.trimmed()); });
    inBackground([&] { ASSERT_TRUE(client.connect(nullptr)); });
    EXPECT_EQ(messages({QStringLiteral("LISTEN news;"), QStringLiteral("NOTIFY news, 'it''s';"),
                        QStringLiteral("DO $$BEGIN RAISE WARNING 'care'; END$$")})
                  .size(),
              3);
    ASSERT_EQ(notices.size(), 2);
    EXPECT_EQ(notices[0], QStringLiteral("WARNING:  care"));
    EXPECT_TRUE(notices[1].startsWith(QLatin1String(
        "Asynchronous notification \"news\" with payload \"it's\" from server process ")))
        << qPrintable(notices[1]);
}

TEST_F(QueryExecution, readsAnErrorOnceAndThenTheNextQueryRuns)
{
    inBackground([&] {
        DXError error;
        auto rows = client.executeQuery(
            QStringLiteral("SELECT 10 / (5 - i) FROM generate_series(1, 9) AS i"), &error);
        ASSERT_TRUE(rows);
        EXPECT_FALSE(error);
        int count = 0;
        while (rows->next(&error))
            ++count;
        EXPECT_EQ(count, 4);
        EXPECT_EQ(error.description(), QStringLiteral("ERROR:  division by zero\n"));
        EXPECT_EQ(error.domain(), QString());
        EXPECT_EQ(client.lastError().domain(), QStringLiteral("Postgres"));
        DXError again;
        EXPECT_FALSE(rows->next(&again));
        EXPECT_FALSE(rows->nextResultSet(&again));
        EXPECT_FALSE(again);

        // Nobody looked at the first statement's failure when the text was sent: the reader hears
        // of it.
        rows = client.executeQuery(QStringLiteral("SELECT nope"), nullptr);
        EXPECT_FALSE(rows->next(&again));

        // What was not read to its end is dropped with its reader.
        rows = client.executeQuery(
            QStringLiteral("SELECT generate_series(1, 100000); COPY pg_class TO STDOUT; SELECT 2"),
            nullptr);
        EXPECT_TRUE(rows->next(nullptr));
        rows.reset();
        rows = client.executeQuery(QStringLiteral("SELECT 3"), nullptr);
        ASSERT_TRUE(rows->next(nullptr));
        EXPECT_EQ(rows->objectForColumnIndex(0), DXValue(3));
        EXPECT_EQ(client.lastQueryExecuted(), QStringLiteral("SELECT 3"));
    });
}

TEST_F(QueryExecution, convertsCellsByTheirType)
{
    struct Case
    {
        const char *expression;
        DXValue expected;
    };
    const auto text = [](const char *utf8) { return DXValue(QString::fromUtf8(utf8)); };
    const std::initializer_list<Case> cases{
        {"true", text("True")},
        {"false", text("False")},
        {"'\\x0aff'::bytea", DXValue(QByteArrayLiteral("\\x0aff"))},
        {"42::int2", DXValue(42)},
        {"-42", DXValue(-42)},
        {"9223372036854775807", DXValue(Q_INT64_C(9223372036854775807))},
        {"4294967295::oid", DXValue(Q_INT64_C(4294967295))},
        {"12345678901234567890123456789.0123456789",
         *DXDecimal::fromString("12345678901234567890123456789.0123456789")},
        {"'NaN'::numeric", *DXDecimal::fromString("NaN")},
        {"1.5::float8", text("1.5")},
        {"date '2026-02-28'", text("2026-02-28")},
        {"timestamp '2026-02-28 12:00'", text("2026-02-28 12:00:00")},
        {"'{1,2}'::int[]", text("{1,2}")},
        {"''::text", text("")},
        {"'a'::\"char\"", text("a")},
        {"'\U0001F418 é'", text("\U0001F418 é")},
        {"NULL::int", DXValue()},
        {"NULL::text", DXValue()},
    };
    inBackground([&] {
        for (const Case &oneCase : cases) {
            const auto rows = client.executeQuery(
                QStringLiteral("SELECT %1 AS c").arg(QString::fromUtf8(oneCase.expression)),
                nullptr);
            ASSERT_TRUE(rows->next(nullptr)) << oneCase.expression;
            EXPECT_EQ(rows->objectForColumnIndex(0), oneCase.expected) << oneCase.expression;
            EXPECT_EQ(rows->stringForColumn(QStringLiteral("c")), oneCase.expected);
            EXPECT_TRUE(rows->stringForColumn(QStringLiteral("C")).isNull());
            EXPECT_TRUE(rows->objectForColumnIndex(7).isNull());
        }
    });
}

} // namespace
