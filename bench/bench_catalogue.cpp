// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Loads parts of a large catalogue as the tree does, and runs the very queries through libpq alone,
// and prints what the driver costs beside it. See README.md here.

#include "client/DatabaseResultSet.h"
#include "dispatch/DXDispatch.h"
#include "driver/PostgresCatalogueReader.h"
#include "driver/PostgresDatabaseConnectionDetails.h"
#include "driver/PostgresSystemDatabaseQueries.h"
#include "support/PostgresCluster.h"
#include "tree/objects/PostgresDatabaseTreeEntryDatabaseTable.h"
#include "tree/sections/PostgresDatabaseTreeEntrySectionStoredProcedures.h"
#include "tree/sections/PostgresDatabaseTreeEntrySectionTables.h"

#include <QFile>

#include <libpq-fe.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <vector>

namespace
{

constexpr std::size_t rounds = 9;

[[noreturn]] void stop(const char *what, const char *why)
{
    std::fprintf(stderr, "bench_catalogue: %s: %s\n", what, why);
    std::exit(1);
}

struct Load
{
    const char *name;
    const char *title;
    QMap<QString, QString> placeholders;
    // A new node that loads the same; empty when none does just this.
    std::function<std::shared_ptr<DXDatabaseTreeEntry>()> makeNode;
};

QString queryOf(const Load &load)
{
    QString query = PostgresSystemDatabaseQueries::queryByTitle(QLatin1String(load.title));
    for (auto part = load.placeholders.cbegin(); part != load.placeholders.cend(); ++part)
        query.replace(part.key(), part.value());
    return query;
}

int readBare(PGconn *connection, const QByteArray &query)
{
    PGresult *const result = PQexec(connection, query.constData());
    if (PQresultStatus(result) != PGRES_TUPLES_OK)
        stop("reading", PQerrorMessage(connection));
    const int rows = PQntuples(result);
    qint64 bytes = 0;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < PQnfields(result); ++column)
            bytes += PQgetvalue(result, row, column)[0] + PQgetlength(result, row, column);
    }
    PQclear(result);
    return bytes > 0 ? rows : 0;
}

// Every cell as the text that callers take.
int readThroughDriver(const DabroDBC &details, const QString &query)
{
    DXError error;
    int rows = 0;
    qint64 characters = 0;
    PostgresCatalogueReader::read(
        details, query,
        [&](const DatabaseResultSet &row) {
            for (quint32 column = 0; column < row.columnCount(); ++column)
                characters += row.stringForColumnIndex(column).toText().size();
            ++rows;
        },
        &error);
    if (error)
        stop("reading", qPrintable(error.description()));
    return characters > 0 ? rows : 0;
}

class Finish final : public DXDatabaseTreeEntryDelegate
{
public:
    void databaseTreeEntryDidBeginLoading(DXDatabaseTreeEntry &) override { }
    void databaseTreeEntryDidFinishLoading(DXDatabaseTreeEntry &) override { m_done.set_value(); }
    void wait() { m_done.get_future().wait(); }

private:
    std::promise<void> m_done;
};

void loadNode(DXDatabaseTreeEntry &node, const std::shared_ptr<DabroDBC> &details)
{
    const auto finish = std::make_shared<Finish>();
    node.setDelegate(finish);
    node.setDatabaseConnectionDetails(details);
    node.loadEntriesAsync(DXDatabaseTreeEntry::Reload::IfNeeded);
    finish->wait();
    if (!node.childEntries() || node.childEntries()->isEmpty())
        stop("loading", "the node is empty");
}

double seconds(const std::function<void()> &work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::array<double, rounds> values)
{
    std::nth_element(values.begin(), values.begin() + rounds / 2, values.end());
    return values[rounds / 2];
}

void compare(const Load &load, PGconn *connection, const std::shared_ptr<DabroDBC> &details)
{
    const QString query = queryOf(load);
    const QByteArray bareQuery = query.toUtf8();
    std::array<double, rounds> bare{};
    std::array<double, rounds> reader{};
    std::array<double, rounds> node{};
    int rows = readBare(connection, bareQuery);
    if (rows == 0 || readThroughDriver(*details, query) != rows)
        stop(load.title, "the numbers of rows differ");
    for (std::size_t round = 0; round < rounds; ++round) {
        bare[round] = seconds([&] { readBare(connection, bareQuery); });
        reader[round] = seconds([&] { readThroughDriver(*details, query); });
        if (const auto entry = load.makeNode ? load.makeNode() : nullptr)
            node[round] = seconds([&] { loadNode(*entry, details); });
    }
    const double floor = median(bare);
    std::printf("%-22s %6d rows: bare %8.2f ms, driver %8.2f ms, ratio %.2f", load.name, rows,
                floor * 1e3, median(reader) * 1e3, median(reader) / floor);
    if (load.makeNode)
        std::printf("; as nodes %8.2f ms, ratio %.2f", median(node) * 1e3, median(node) / floor);
    std::printf("\n");
}

struct Server
{
    QString socketFolder;
    quint16 port;

    std::shared_ptr<DabroDBC> details() const
    {
        auto details = std::make_shared<PostgresDatabaseConnectionDetails>();
        details->setHost(socketFolder);
        details->setPort(port);
        details->setUsername(PostgresCluster::superuser());
        details->setDatabase(QStringLiteral("postgres"));
        return details;
    }
    PGconn *connect() const
    {
        const QByteArray parameters = QStringLiteral("host='%1' port=%2 user=%3 dbname=postgres")
                                          .arg(socketFolder)
                                          .arg(port)
                                          .arg(PostgresCluster::superuser())
                                          .toUtf8();
        PGconn *const connection = PQconnectdb(parameters.constData());
        if (PQstatus(connection) != CONNECTION_OK)
            stop("connecting", PQerrorMessage(connection));
        return connection;
    }
};

std::vector<Load> loads()
{
    const QString clause = QStringLiteral("{SCHEMA_CLAUSE}");
    const QString schema = QStringLiteral("{TABLE_SCHEMA}");
    const QString area = QStringLiteral("area_7");
    const QString table = QStringLiteral("orders_of_region_500");
    using Tables = PostgresDatabaseTreeEntrySectionTables;
    using Functions = PostgresDatabaseTreeEntrySectionStoredProcedures;
    using Table = PostgresDatabaseTreeEntryDatabaseTable;
    return {
        {"all-tables",
         "Postgres_ListDatabaseTables",
         {{clause, QString()}},
         [] { return std::make_shared<Tables>(QString()); }},
        {"schemas-tables",
         "Postgres_ListDatabaseTables",
         {{clause, QStringLiteral("AND table_schema = '%1'").arg(area)}},
         [area] { return std::make_shared<Tables>(area); }},
        {"columns",
         "Postgres_ListColumnsInTable",
         {{schema, area}, {QStringLiteral("{TABLE_NAME}"), table}},
         [=] {
             return std::make_shared<Table>(Table::Init{.schema = area,
                                                        .tableName = table,
                                                        .defaultSchema = QStringLiteral("public"),
                                                        .displaySchema = -1});
         }},
        {"functions",
         "List_StoredProceduresInDatabase_NonSystem",
         {{clause, QString()}},
         [] { return std::make_shared<Functions>(QString()); }},
        {"search", "List_SearchableDatabaseEntries", {}, {}},
        {"autocomplete", "List_EntriesForAutocomplete", {{schema, QStringLiteral("postgres")}}, {}},
        {"export", "Postgres_TablesForExport", {}, {}},
    };
}

void compareAll(const Server &server)
{
    PGconn *const connection = server.connect();
    const auto details = server.details();
    for (const Load &load : loads())
        compare(load, connection, details);
    PQfinish(connection);
}

// For counting instructions: one load in one way, over and over.
void repeat(const QString &way, const QString &name, int times, const Server &server)
{
    const auto all = loads();
    const auto load = std::find_if(
        all.begin(), all.end(), [&](const Load &each) { return name == QLatin1String(each.name); });
    if (load == all.end())
        stop("there is no such load", qPrintable(name));
    PGconn *const connection = server.connect();
    const auto details = server.details();
    const QString query = queryOf(*load);
    for (int time = 0; time < times; ++time) {
        if (way == QLatin1String("bare"))
            readBare(connection, query.toUtf8());
        else if (way == QLatin1String("node") && load->makeNode)
            loadNode(*load->makeNode(), details);
        else
            readThroughDriver(*details, query);
    }
    PQfinish(connection);
}

void inBackground(const std::function<void()> &work)
{
    std::promise<void> done;
    DXDispatch::background([&] {
        work();
        done.set_value();
    });
    done.get_future().wait();
}

} // namespace

// Without arguments: compares. "serve" keeps a server with the catalogue until a line is read; with
// its socket folder and port: compares there; with "bare", "driver" or "node", the name of a load
// and a number in front of them: loads so often in that way.
int main(int argc, char **argv)
{
    // Loads refuse the main thread, which is the first that asks.
    DXDispatch::isMainThread();
    const auto argument = [&](int index) { return QString::fromLocal8Bit(argv[index]); };
    if (argc >= 3) {
        const Server server{argument(argc - 2), argument(argc - 1).toUShort()};
        inBackground([&] {
            if (argc == 6)
                repeat(argument(1), argument(2), argument(3).toInt(), server);
            else
                compareAll(server);
        });
    } else {
        const PostgresCluster cluster(
            {.configuration = {QStringLiteral("max_locks_per_transaction = 1000")}});
        QFile objects(QStringLiteral(DX_BENCH_FOLDER "/catalogue.sql"));
        if (!objects.open(QFile::ReadOnly))
            stop("reading", "catalogue.sql");
        cluster.psql(QString::fromUtf8(objects.readAll()));
        if (argc == 1) {
            inBackground([&] { compareAll({cluster.socketFolder(), cluster.port()}); });
        } else {
            std::printf("%s %d\n", qPrintable(cluster.socketFolder()), cluster.port());
            std::fflush(stdout);
            std::getchar();
        }
    }
    DXDispatch::shutdown();
    return 0;
}
