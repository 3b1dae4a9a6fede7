// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a query of a million rows in a query tab, and through a bare libpq loop, and prints how soon
// the first rows are painted, and for how long the main thread did not listen. See README.md here.

#include "BareReading.h"
#include "PaintedApplication.h"
#include "dispatch/DXDispatch.h"
#include "driver/PostgresDatabaseConnectionDetails.h"
#include "support/DXWait.h"
#include "support/PostgresCluster.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXQuerySession.h"
#include "ui/query/DXQueryTab.h"
#include "ui/results/DXResultGrid.h"
#include "ui/results/DXResultPage.h"

#include <QLoggingCategory>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

namespace
{

using Clock = PaintedApplication::Clock;

constexpr int rowCount = 1'000'000;
constexpr int rounds = 5;
constexpr double longestStall = 50;
const char *const fiveColumns =
    "CREATE TABLE reading AS SELECT i AS id, 'customer number ' || i AS name,"
    " (i * 1.25)::numeric(12,2) AS amount, timestamp '2020-01-01' + i * interval '1 minute' AS at,"
    " CASE WHEN i % 5 <> 0 THEN repeat('x', i % 60) END AS note"
    " FROM generate_series(1, %1) AS i";
const char *const readingQuery = "SELECT * FROM reading";

struct Measurement
{
    double firstRow = 0;
    double firstRowWork = 0;
    double stalls = 0;
    double longestGap = 0;
    double longestWork = 0;
    double total = 0;
};

[[noreturn]] void stop(const char *what, const QString &why)
{
    std::fprintf(stderr, "bench_first_row: %s: %s\n", what, qPrintable(why));
    std::exit(1);
}

double milliseconds(Clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

// Of the thread that asks.
double processorMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// A timer of a millisecond: when it comes late, clicks and keys did, too.
class Probe final
{
public:
    Probe()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { tick(); });
    }
    void start()
    {
        m_stalls = 0;
        m_longestGap = 0;
        m_longestWork = 0;
        m_last = Clock::now();
        m_lastWork = processorMilliseconds();
        m_timer.start();
    }
    void report(Measurement &measurement)
    {
        m_timer.stop();
        measurement.stalls = m_stalls;
        measurement.longestGap = m_longestGap;
        measurement.longestWork = m_longestWork;
    }
    /// Nothing that was told to the main thread before this has been left lying.
    Clock::time_point last() const { return m_last; }
    double lastWork() const { return m_lastWork; }

private:
    void tick()
    {
        const Clock::time_point now = Clock::now();
        const double work = processorMilliseconds();
        const double gap = milliseconds(now - m_last);
        m_stalls += gap > longestStall ? 1 : 0;
        m_longestGap = std::max(m_longestGap, gap);
        m_longestWork = std::max(m_longestWork, work - m_lastWork);
        m_last = now;
        m_lastWork = work;
    }

    QTimer m_timer;
    Clock::time_point m_last;
    double m_lastWork = 0;
    double m_stalls = 0;
    double m_longestGap = 0;
    double m_longestWork = 0;
};

// As the program's own event loop listens, while QTest's looks but every 10 ms.
template<typename Condition>
void listenUntil(const Condition &condition)
{
    const Clock::time_point limit = Clock::now() + DXWait::Limit;
    while (!condition()) {
        if (Clock::now() > limit)
            stop("reading in the tab", QStringLiteral("it does not end"));
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

bool isGridWithRows(const DXQueryTab &tab, const QObject &widget)
{
    const DXResultPage *const page = tab.currentResultPage();
    return page && page->grid() && &widget == page->grid()->viewport()
           && page->grid()->model()->rowCount() > 0;
}

// The rows were handed over after the probe's last tick before the tab heard of them: the time from
// there is a millisecond too long rather than too short.
Measurement runInTab(PaintedApplication &application, DXQueryTab &tab)
{
    Measurement result;
    Probe probe;
    Clock::time_point handedOver;
    Clock::time_point painted;
    double work = 0;
    const auto listening = QObject::connect(
        &tab.session(), &DXQuerySession::progressed, [&handedOver, &work, &probe, &tab] {
            if (handedOver != Clock::time_point() || tab.resultPages().isEmpty())
                return;
            handedOver = probe.last();
            work = probe.lastWork();
        });
    application.watch([&tab](QObject &widget) { return isGridWithRows(tab, widget); },
                      [&application, &painted, &work] {
                          painted = Clock::now();
                          work = processorMilliseconds() - work;
                          application.stopWatching();
                      });
    probe.start();
    const Clock::time_point begin = Clock::now();
    tab.runAll();
    listenUntil([&tab] { return !tab.session().isBusy(); });
    const Clock::time_point end = Clock::now();
    result.total = milliseconds(end - begin);
    // What the end has still to do is felt, too.
    listenUntil([&tab, &painted, end] {
        return painted != Clock::time_point() && tab.currentResultPage()
               && tab.currentResultPage()->grid()->model()->rowCount() == rowCount
               && Clock::now() > end + std::chrono::milliseconds(200);
    });
    QObject::disconnect(listening);
    probe.report(result);
    result.firstRow = milliseconds(painted - handedOver);
    result.firstRowWork = work;
    return result;
}

double readBare(const QByteArray &connectionString)
{
    PGconn *const connection = PQconnectdb(connectionString.constData());
    const Clock::time_point begin = Clock::now();
    if (BareReading::read(connection, readingQuery) != rowCount)
        stop("reading bare", QString::fromUtf8(PQerrorMessage(connection)));
    const double result = milliseconds(Clock::now() - begin);
    PQfinish(connection);
    return result;
}

double median(const std::vector<Measurement> &measurements, double Measurement::*member)
{
    std::vector<double> values;
    values.reserve(measurements.size());
    for (const Measurement &measurement : measurements)
        values.push_back(measurement.*member);
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double most(const std::vector<Measurement> &measurements, double Measurement::*member)
{
    double result = 0;
    for (const Measurement &measurement : measurements)
        result = std::max(result, measurement.*member);
    return result;
}

void compare(PaintedApplication &application, const PostgresCluster &cluster)
{
    const auto details = std::make_shared<PostgresDatabaseConnectionDetails>();
    details->setHost(cluster.socketFolder());
    details->setPort(cluster.port());
    details->setUsername(PostgresCluster::superuser());
    details->setDatabase(QStringLiteral("postgres"));
    DXQueryTab tab({.details = details});
    tab.resize(1000, 800);
    tab.show();
    tab.editor().setText(QString::fromLatin1(readingQuery));
    tab.session().connectToServer();
    if (!DXWait::until([&tab] { return !tab.session().isBusy(); }))
        stop("connecting", QStringLiteral("the server does not answer"));
    const QByteArray text = QStringLiteral("host=%1 port=%2 user=%3 dbname=postgres")
                                .arg(cluster.socketFolder(), QString::number(cluster.port()),
                                     PostgresCluster::superuser())
                                .toUtf8();
    std::vector<Measurement> inTab;
    std::vector<Measurement> bare;
    for (int round = 0; round < rounds; ++round) {
        inTab.push_back(runInTab(application, tab));
        bare.push_back({.total = readBare(text)});
    }
    const double total = median(inTab, &Measurement::total);
    const double floor = median(bare, &Measurement::total);
    std::printf("first row of %d rows x 5 columns: painted %.1f ms after it came (at most %.1f "
                "ms), %.1f ms of work; the main "
                "thread stalled %.0f times, its longest gap %.0f ms, its longest work %.0f ms; all "
                "rows after %.2f s, bare libpq %.2f s, ratio %.2f\n",
                rowCount, median(inTab, &Measurement::firstRow),
                most(inTab, &Measurement::firstRow), median(inTab, &Measurement::firstRowWork),
                most(inTab, &Measurement::stalls), most(inTab, &Measurement::longestGap),
                most(inTab, &Measurement::longestWork), total / 1000, floor / 1000, total / floor);
}

} // namespace

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    PaintedApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("org.dabro=false"));
    {
        PostgresCluster cluster;
        cluster.psql(QString::fromLatin1(fiveColumns).arg(rowCount));
        cluster.psql(QStringLiteral("VACUUM ANALYZE reading"));
        compare(application, cluster);
    }
    DXDispatch::shutdown();
    return 0;
}
