// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Inserts rows through the driver and through a bare loop that sends the same statements, made
// beforehand, and prints what the driver costs beside it. See README.md here.

#include "dispatch/DXDispatch.h"
#include "driver/PostgresBulkInsertBuilder.h"
#include "driver/PostgresDatabaseClient.h"
#include "support/PostgresCluster.h"

#include <QCoreApplication>

#include <libpq-fe.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <future>
#include <memory>
#include <vector>

namespace
{

using Rows = QList<QList<DXValue>>;
using Connection = std::unique_ptr<PGconn, decltype(&PQfinish)>;

constexpr int rowCount = 200'000;
constexpr int rounds = 7;

struct Measurement
{
    double seconds = 0;
    // Of this process: what the server works is not in it.
    double cpuSeconds = 0;
};

[[noreturn]] void stop(const char *what, const QString &why)
{
    std::fprintf(stderr, "bench_bulk_insert: %s: %s\n", what, qPrintable(why));
    std::exit(1);
}

QStringList columnNames()
{
    return {u"id"_qs,   u"Customer"_qs, u"note"_qs,  u"amount"_qs,
            u"paid"_qs, u"placed"_qs,   u"score"_qs, u"reference"_qs};
}

QStringList columnTypes()
{
    return {u"integer"_qs, u"text"_qs,      u"text"_qs,   u"numeric(12,2)"_qs,
            u"boolean"_qs, u"timestamp"_qs, u"bigint"_qs, u"character varying"_qs};
}

// As an import brings them: mostly texts, with numbers, decimals and nulls between them.
Rows makeRows()
{
    Rows rows;
    rows.reserve(rowCount);
    for (int row = 0; row < rowCount; ++row) {
        rows += {
            qint64(row),
            u"Customer number %1"_qs.arg(row),
            row % 5 == 0 ? DXValue() : DXValue(u"It's note %1: größer, "_qs.arg(row).repeated(2)),
            *DXDecimal::fromString(QByteArray::number(row * 1.25, 'f', 2)),
            row % 3 == 0 ? u"true"_qs : u"false"_qs,
            u"2020-01-%1 12:34:%2"_qs.arg(row % 28 + 1).arg(row % 60),
            u"$1,%1"_qs.arg(row % 900 + 100),
            QString::number(row * 7919LL, 16),
        };
    }
    return rows;
}

QList<QByteArray> makeStatements(const Rows &rows)
{
    QList<QByteArray> statements;
    PostgresBulkInsertBuilder builder(u"through_bare"_qs, columnNames(), columnTypes());
    for (const QList<DXValue> &row : rows) {
        DXError error;
        if (!builder.addRow(row, &error))
            stop("writing statements", error.description());
        if (builder.isFull())
            statements += builder.takeStatement();
    }
    if (builder.pendingRows() > 0)
        statements += builder.takeStatement();
    return statements;
}

void createTable(const PostgresCluster &cluster, const char *name)
{
    QStringList columns;
    for (qsizetype column = 0; column < columnNames().size(); ++column)
        columns += u"\"%1\" %2"_qs.arg(columnNames()[column], columnTypes()[column]);
    cluster.psql(u"DROP TABLE IF EXISTS %1; CREATE TABLE %1 (%2)"_qs.arg(QLatin1String(name),
                                                                         columns.join(u", ")));
}

template<typename Work>
Measurement measure(const Work &work)
{
    const auto start = std::chrono::steady_clock::now();
    const std::clock_t cpuStart = std::clock();
    work();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    return {taken.count(), static_cast<double>(std::clock() - cpuStart) / CLOCKS_PER_SEC};
}

void insertThroughDriver(PostgresDatabaseClient &client, const Rows &rows)
{
    DXError error;
    double progress = 0;
    const auto follow = [&](double percent) {
        progress = percent;
        return true;
    };
    if (!client.bulkInsert({.rows = rows,
                            .tableName = u"through_driver"_qs,
                            .columnNames = columnNames(),
                            .columnTypes = columnTypes()},
                           follow, &error))
        stop("inserting through the driver", error.description());
}

void insertBare(PGconn *connection, const QList<QByteArray> &statements)
{
    const auto run = [connection](const char *statement) {
        PGresult *const result = PQexec(connection, statement);
        if (PQresultStatus(result) != PGRES_COMMAND_OK)
            stop("inserting bare", QString::fromUtf8(PQerrorMessage(connection)));
        PQclear(result);
    };
    run("BEGIN");
    for (const QByteArray &statement : statements)
        run(statement.constData());
    run("END");
}

template<typename Value>
double median(const std::vector<std::pair<Measurement, Measurement>> &pairs, const Value &value)
{
    std::vector<double> values;
    values.reserve(pairs.size());
    for (const auto &[driver, bare] : pairs)
        values.push_back(value(driver, bare));
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

std::shared_ptr<PostgresDatabaseConnectionDetails> detailsOf(const QString &host, quint16 port)
{
    const auto details = std::make_shared<PostgresDatabaseConnectionDetails>();
    details->setHost(host);
    details->setPort(port);
    details->setUsername(PostgresCluster::superuser());
    details->setDatabase(u"postgres"_qs);
    return details;
}

void connectDriver(PostgresDatabaseClient &client)
{
    DXError error;
    if (!client.connect(&error))
        stop("connecting", error.description());
}

Connection connectBare(const QString &host, quint16 port)
{
    const QByteArray text =
        u"host='%1' port=%2 user=%3 dbname=postgres client_encoding=UTF8"_qs.arg(host)
            .arg(port)
            .arg(PostgresCluster::superuser())
            .toUtf8();
    Connection connection(PQconnectdb(text.constData()), PQfinish);
    if (PQstatus(connection.get()) != CONNECTION_OK)
        stop("connecting", QString::fromUtf8(PQerrorMessage(connection.get())));
    return connection;
}

void compare()
{
    const Rows rows = makeRows();
    const QList<QByteArray> statements = makeStatements(rows);
    PostgresCluster cluster;
    PostgresDatabaseClient client(detailsOf(cluster.socketFolder(), cluster.port()));
    connectDriver(client);
    const Connection connection = connectBare(cluster.socketFolder(), cluster.port());

    std::vector<std::pair<Measurement, Measurement>> pairs;
    for (int round = 0; round < rounds; ++round) {
        createTable(cluster, "through_driver");
        createTable(cluster, "through_bare");
        Measurement driver;
        const auto measureDriver = [&] {
            driver = measure([&] { insertThroughDriver(client, rows); });
        };
        // Each goes first in turn, so that what the server does behind one falls on both alike.
        if (round % 2 == 0)
            measureDriver();
        const Measurement bare = measure([&] { insertBare(connection.get(), statements); });
        if (round % 2 != 0)
            measureDriver();
        pairs.emplace_back(driver, bare);
    }
    std::printf(
        "bulk insert of %d rows x %lld columns: driver %.2f s (client CPU %.2f s); bare "
        "libpq %.2f s (%.2f s); ratio %.2f in time\n",
        rowCount, static_cast<long long>(columnNames().size()),
        median(pairs, [](auto driver, auto) { return driver.seconds; }),
        median(pairs, [](auto driver, auto) { return driver.cpuSeconds; }),
        median(pairs, [](auto, auto bare) { return bare.seconds; }),
        median(pairs, [](auto, auto bare) { return bare.cpuSeconds; }),
        median(pairs, [](auto driver, auto bare) { return driver.seconds / bare.seconds; }));
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    // The client refuses to block the main thread.
    std::promise<void> done;
    DXDispatch::background([&] {
        compare();
        done.set_value();
    });
    done.get_future().wait();
    DXDispatch::shutdown();
    return 0;
}
