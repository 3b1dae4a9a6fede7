// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Reads a result through the driver's batch path and through a bare libpq loop that copies the
// cells, and prints what the driver costs beside it. See README.md here.

#include "BareReading.h"
#include "client/DXQueryResult.h"
#include "dispatch/DXDispatch.h"
#include "driver/PostgresDatabaseClient.h"
#include "support/PostgresCluster.h"

#include <QCoreApplication>

#include <libpq-fe.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

const char *const mixedColumns =
    "CREATE TABLE reading AS SELECT i AS id, i % 1000 AS small, i * 1000003::bigint AS big,"
    " (i * 1.25)::numeric(12,2) AS amount, i * 0.5::float8 AS ratio, i % 3 = 0 AS flag,"
    " md5(i::text) AS hash, 'customer number ' || i AS name,"
    " timestamp '2020-01-01' + i * interval '1 minute' AS at,"
    " CASE WHEN i % 5 <> 0 THEN repeat('x', i % 60) END AS note"
    " FROM generate_series(1, %1) AS i";
const char *const readingQuery = "SELECT * FROM reading";
constexpr int rounds = 5;

struct Measurement
{
    double seconds = 0;
    double megabytes = 0;
};

[[noreturn]] void stop(const char *what, const char *why)
{
    std::fprintf(stderr, "bench_batch_reading: %s: %s\n", what, why);
    std::exit(1);
}

qsizetype readBare(const QString &host, int port)
{
    const QByteArray connectionString =
        QStringLiteral("host='%1' port=%2 user=dba dbname=postgres").arg(host).arg(port).toUtf8();
    PGconn *const connection = PQconnectdb(connectionString.constData());
    if (PQstatus(connection) != CONNECTION_OK)
        stop("connecting", PQerrorMessage(connection));
    const qsizetype rows = BareReading::read(connection, readingQuery);
    PQfinish(connection);
    return rows;
}

qsizetype readThroughDriver(const QString &host, int port)
{
    auto details = std::make_shared<PostgresDatabaseConnectionDetails>();
    details->setHost(host);
    details->setPort(static_cast<quint16>(port));
    details->setUsername(QStringLiteral("dba"));
    details->setDatabase(QStringLiteral("postgres"));
    DXError error;
    DXQueryResult result;
    std::promise<void> done;
    // Clients refuse the main thread, which is the first that asks.
    DXDispatch::isMainThread();
    DXDispatch::background([&] {
        PostgresDatabaseClient client(details);
        if (client.connect(&error)) {
            const QString query = QString::fromLatin1(readingQuery);
            client.executeQueryDetails({{query, 0, {0, query.size()}}}, result, {}, &error);
        }
        done.set_value();
    });
    done.get_future().wait();
    if (error)
        stop("reading", qPrintable(error.description()));
    return static_cast<qsizetype>(result.totalResultCount());
}

using Reader = qsizetype (*)(const QString &host, int port);

// Each reading has a process of its own, whose peak of memory is its alone.
Measurement measure(Reader reader, const PostgresCluster &cluster, qsizetype expectedRows)
{
    timespec start{};
    clock_gettime(CLOCK_MONOTONIC, &start);
    const pid_t child = fork();
    if (child == 0)
        _exit(reader(cluster.socketFolder(), cluster.port()) == expectedRows ? 0 : 1);
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        stop("reading", "the wrong number of rows came");
    timespec end{};
    clock_gettime(CLOCK_MONOTONIC, &end);
    return {static_cast<double>(end.tv_sec - start.tv_sec)
                + static_cast<double>(end.tv_nsec - start.tv_nsec) / 1e9,
            static_cast<double>(usage.ru_maxrss) / 1024};
}

Measurement median(std::vector<Measurement> measurements)
{
    const auto middle = measurements.begin() + static_cast<std::ptrdiff_t>(measurements.size() / 2);
    const auto by = [&](double Measurement::*member) {
        std::nth_element(measurements.begin(), middle, measurements.end(),
                         [member](const auto &l, const auto &r) { return l.*member < r.*member; });
        return *middle.*member;
    };
    Measurement result;
    result.seconds = by(&Measurement::seconds);
    result.megabytes = by(&Measurement::megabytes);
    return result;
}

int compare(qsizetype rows)
{
    PostgresCluster cluster;
    cluster.psql(QString::fromLatin1(mixedColumns).arg(rows));
    cluster.psql(QStringLiteral("VACUUM ANALYZE reading"));
    std::vector<Measurement> bare;
    std::vector<Measurement> driver;
    for (int round = 0; round < rounds; ++round) {
        bare.push_back(measure(readBare, cluster, rows));
        driver.push_back(measure(readThroughDriver, cluster, rows));
    }
    const Measurement floor = median(bare);
    const Measurement ours = median(driver);
    std::printf(
        "batch reading of %lld rows x 10 columns: driver %.2f s, %.0f MB; bare libpq %.2f s, "
        "%.0f MB; ratio %.2f in time, %.2f in memory\n",
        static_cast<long long>(rows), ours.seconds, ours.megabytes, floor.seconds, floor.megabytes,
        ours.seconds / floor.seconds, ours.megabytes / floor.megabytes);
    return 0;
}

} // namespace

// Without arguments: compares. With "bare" or "driver", a socket folder and a port: one reading,
// for counting its instructions; "serve ROWS" keeps a server with the table for that until a line
// is read.
int main(int argc, char **argv)
{
    const auto argument = [&](int index) { return QString::fromLocal8Bit(argv[index]); };
    if (argc == 4) {
        const Reader reader = argument(1) == QLatin1String("bare") ? readBare : readThroughDriver;
        return reader(argument(2), argument(3).toInt()) > 0 ? 0 : 1;
    }
    if (argc == 3) {
        PostgresCluster cluster;
        cluster.psql(QString::fromLatin1(mixedColumns).arg(argument(2)));
        std::printf("%s %d\n", qPrintable(cluster.socketFolder()), cluster.port());
        std::fflush(stdout);
        return std::getchar() == EOF ? 1 : 0;
    }
    return compare(1'000'000);
}
