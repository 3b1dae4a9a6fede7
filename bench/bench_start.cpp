// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Starts the window, and a bare one of the same kinds of widgets, each in a process of its own, and
// prints how long they take to be painted and to show a server's tree. See README.md here.

#include "support/PostgresCluster.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <libpq-fe.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace
{

using Clock = std::chrono::steady_clock;

constexpr int rounds = 11;
constexpr int patienceMilliseconds = 60'000;

struct Start
{
    double painted = 0;
    double paintedMegabytes = 0;
    double tree = 0;
    double treeMegabytes = 0;
};

[[noreturn]] void stop(const char *what, const QByteArray &why)
{
    std::fprintf(stderr, "bench_start: %s: %s\n", what, why.constData());
    std::exit(1);
}

// Settings, journal and caches of their own, and no desktop that could answer slowly.
QProcessEnvironment environment(const QTemporaryDir &home)
{
    QProcessEnvironment result = QProcessEnvironment::systemEnvironment();
    for (const char *const name :
         {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        result.insert(QLatin1String(name), home.path());
    result.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                  QStringLiteral("unix:path=/nonexistent"));
    if (!result.contains(QStringLiteral("QT_QPA_PLATFORM")))
        result.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return result;
}

Start start(const QProcessEnvironment &environment, const QStringList &arguments)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProgram(QDir(QCoreApplication::applicationDirPath())
                           .filePath(QStringLiteral("bench_start_window")));
    QStringList all = arguments;
    all.insert(1, QString::number(Clock::now().time_since_epoch() / std::chrono::nanoseconds(1)));
    process.setArguments(all);
    process.start();
    if (!process.waitForFinished(patienceMilliseconds) || process.exitCode() != 0)
        stop("starting the window",
             process.errorString().toUtf8() + process.readAllStandardError());
    Start result;
    const QList<QByteArray> lines = process.readAllStandardOutput().split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> fields = line.split(' ');
        if (fields.size() != 3)
            continue;
        const bool isTree = fields[0] == "tree";
        (isTree ? result.tree : result.painted) = fields[1].toDouble();
        (isTree ? result.treeMegabytes : result.paintedMegabytes) = fields[2].toDouble();
    }
    if (result.painted == 0 || (arguments.size() > 1 && result.tree == 0))
        stop("starting the window", "it did not tell when it was there");
    return result;
}

// What the tree's first look at a server takes at least.
double listBare(const QByteArray &connectionString)
{
    const auto begin = Clock::now();
    PGconn *const connection = PQconnectdb(connectionString.constData());
    PGresult *const result = PQexec(connection, "SELECT datname FROM pg_database ORDER BY datname");
    if (PQresultStatus(result) != PGRES_TUPLES_OK)
        stop("listing databases", PQerrorMessage(connection));
    PQclear(result);
    PQfinish(connection);
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

double median(const std::vector<Start> &starts, double Start::*member)
{
    std::vector<double> values;
    values.reserve(starts.size());
    for (const Start &start : starts)
        values.push_back(start.*member);
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const PostgresCluster cluster;
    const QTemporaryDir home;
    const QProcessEnvironment variables = environment(home);
    const QString connection = QStringLiteral("host=%1 port=%2 user=%3 dbname=postgres")
                                   .arg(cluster.socketFolder(), QString::number(cluster.port()),
                                        PostgresCluster::superuser());
    std::vector<Start> dabro;
    std::vector<Start> bare;
    // The first of each fills the caches of files and fonts, and is not counted.
    for (int round = 0; round <= rounds; ++round) {
        const Start one = start(variables, {QStringLiteral("dabro"), connection});
        Start other = start(variables, {QStringLiteral("bare")});
        other.tree = other.painted + listBare(connection.toUtf8());
        if (round > 0) {
            dabro.push_back(one);
            bare.push_back(other);
        }
    }
    const double painted = median(dabro, &Start::painted);
    const double tree = median(dabro, &Start::tree);
    const double megabytes = median(dabro, &Start::treeMegabytes);
    const double barePainted = median(bare, &Start::painted);
    const double bareTree = median(bare, &Start::tree);
    const double bareMegabytes = median(bare, &Start::paintedMegabytes);
    std::printf(
        "start: painted after %.0f ms, %.0f MB; with a server's tree after %.0f ms, %.0f MB; "
        "bare window %.0f ms, %.0f MB, and with a bare list of databases %.0f ms; ratio "
        "%.2f to the painting, %.2f to the tree, %.2f in memory\n",
        painted * 1000, median(dabro, &Start::paintedMegabytes), tree * 1000, megabytes,
        barePainted * 1000, bareMegabytes, bareTree * 1000, painted / barePainted, tree / bareTree,
        megabytes / bareMegabytes);
    return 0;
}
