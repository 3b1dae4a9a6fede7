// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/driver/ServerAccess.h"

#include "client/DatabaseResultSet.h"
#include "core/DXLogHelper.h"
#include "support/Background.h"
#include "support/DXWait.h"

#include <QProcessEnvironment>

#include <gtest/gtest.h>

namespace
{

// What the person who runs the tests has set for libpq stays out of them.
class CleanEnvironment final : public testing::Environment
{
public:
    void SetUp() override
    {
        const QStringList names = QProcessEnvironment::systemEnvironment().keys();
        for (const QString &name : names) {
            if (name.startsWith(QLatin1String("PG")))
                qunsetenv(name.toLatin1().constData());
        }
        qputenv("PGPASSFILE", "/nonexistent");
        qputenv("PGSERVICEFILE", "/nonexistent");
        // Certificates in ~/.postgresql would be offered to every server.
        qputenv("PGSSLCERT", "/nonexistent");
        qputenv("PGSSLROOTCERT", "/nonexistent");
        qputenv("PGCONNECT_TIMEOUT", "60");
    }
};

const testing::Environment *const cleanEnvironment =
    testing::AddGlobalTestEnvironment(new CleanEnvironment);

} // namespace

ServerAccess::Record ServerAccess::record(const PostgresCluster &cluster, const QString &database)
{
    auto result = std::make_shared<PostgresDatabaseConnectionDetails>();
    result->setHost(cluster.socketFolder());
    result->setPort(cluster.port());
    result->setUsername(PostgresCluster::superuser());
    result->setDatabase(database);
    return result;
}

ServerAccess::Record ServerAccess::recordOnLoopback(const PostgresCluster &cluster,
                                                    const QString &database)
{
    Record result = record(cluster, database);
    result->setHost(QStringLiteral("127.0.0.1"));
    return result;
}

ServerAccess::Attempt ServerAccess::connect(const Record &record)
{
    Attempt attempt;
    attempt.client = std::make_unique<PostgresDatabaseClient>(record);
    attempt.isConnected =
        inBackground([&attempt] { return attempt.client->connect(&attempt.error); });
    return attempt;
}

std::unique_ptr<PostgresDatabaseClient> ServerAccess::connected(const Record &record)
{
    Attempt attempt = connect(record);
    EXPECT_TRUE(attempt.isConnected) << attempt.error.description().toStdString();
    return std::move(attempt.client);
}

QString ServerAccess::scalar(PostgresDatabaseClient &client, const QString &query)
{
    DXError error;
    const DXValue value = inBackground([&] {
        const auto rows = client.executeQuery(query, &error);
        return rows && rows->next(&error) ? rows->objectForColumnIndex(0) : DXValue();
    });
    EXPECT_FALSE(error) << query.toStdString() << ": " << error.description().toStdString();
    return value.toText();
}

DXError ServerAccess::errorOf(PostgresDatabaseClient &client, const QString &query)
{
    return inBackground([&] {
        DXError error;
        client.executeNonQuery(query, &error);
        return error;
    });
}

DXError ServerAccess::runBatch(PostgresDatabaseClient &client, const QString &text,
                               DXQueryResult &result)
{
    DXQueryDetails details;
    details.targetQuery = text;
    details.queryRange = {0, text.size()};
    DXError error;
    client.executeQueryDetails({details}, result, {}, &error);
    return error;
}

std::future<DXError> ServerAccess::start(std::function<DXError()> work)
{
    const auto task = std::make_shared<std::packaged_task<DXError()>>(std::move(work));
    EXPECT_TRUE(DXDispatch::background([task] { (*task)(); }));
    return task->get_future();
}

DXError ServerAccess::finish(std::future<DXError> &work)
{
    const auto isReady = [&work] {
        return work.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    };
    if (!DXWait::until(isReady))
        qFatal("Background work did not end");
    return work.get();
}

ServerAccess::LoggedTexts::LoggedTexts()
    : m_lines(
        DXLogHelper::sharedInstance().observeLines([this](const QString &line) { add(line); }))
    , m_errors(DXLogHelper::sharedInstance().observeErrors(
          [this](const DXError &error, const QVariantMap &details) {
              add(error.description());
              for (const QVariant &detail : details)
                  add(detail.toString());
          }))
{ }

void ServerAccess::LoggedTexts::add(const QString &text)
{
    const std::lock_guard lock(m_mutex);
    m_texts.append(text);
}

QStringList ServerAccess::LoggedTexts::texts() const
{
    const std::lock_guard lock(m_mutex);
    return m_texts;
}

ServerAccess::EnvironmentVariable::EnvironmentVariable(const char *name, const QString &value)
    : m_name(name)
{
    qputenv(name, value.toUtf8());
}

ServerAccess::EnvironmentVariable::~EnvironmentVariable()
{
    qunsetenv(m_name);
}
