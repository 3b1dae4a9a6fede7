// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/PostgresEnumTypeHelper.h"

#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "client/DatabaseResultSet.h"
#include "core/DXLogHelper.h"
#include "core/DXNotificationCenter.h"
#include "dispatch/DXDispatch.h"
#include "driver/PostgresCatalogueReader.h"
#include "driver/PostgresSystemDatabaseQueries.h"

#include <QHash>
#include <QQueue>
#include <QSet>
#include <QVersionNumber>

#include <algorithm>
#include <functional>
#include <mutex>
#include <optional>

namespace
{

using Types = QList<PostgresEnumTypeHelperDetails>;

struct Store
{
    std::mutex mutex;
    QHash<QString, PostgresEnumTypeHelper::EnumTypes> postgresEnumTypeDictionariesForConnection;
};

Store &store()
{
    static Store instance;
    return instance;
}

using Pooled = DabroDatabaseConnectionPool::AllowPooled;

// Loads that were asked for, in a lane for each server. A server's databases are asked for
// together, and may be hundreds: only some load at a time, and then on connections that do not
// stay.
class Requests final
{
public:
    using Work = std::function<void(Pooled allowPooled)>;

    void add(const QString &server, const Work &work)
    {
        const std::lock_guard lock(m_mutex);
        Lane &lane = m_lanes[server];
        lane.waiting.enqueue(work);
        if (lane.running < mostAtATime && DXDispatch::background([this, server] { run(server); }))
            ++lane.running;
    }

private:
    static constexpr int mostAtATime = 2;
    struct Lane
    {
        QQueue<Work> waiting;
        int running = 0;
    };

    void run(const QString &server)
    {
        for (std::unique_lock lock(m_mutex);; lock.lock()) {
            Lane &lane = m_lanes[server];
            if (lane.waiting.isEmpty()) {
                --lane.running;
                return;
            }
            const bool isAlone = lane.waiting.size() == 1 && lane.running == 1;
            const Work work = lane.waiting.dequeue();
            lock.unlock();
            work(isAlone ? Pooled::Yes : Pooled::No);
        }
    }

    std::mutex m_mutex;
    QHash<QString, Lane> m_lanes;
};

Requests &requests()
{
    static Requests instance;
    return instance;
}

// Rows of one type name that come together are one type.
class RowReader final
{
public:
    void read(const DatabaseResultSet &row)
    {
        const QString typeName = row.stringForColumnIndex(0).toText();
        if (types.isEmpty() || types.last().typeName != typeName) {
            types.append({.typeName = typeName,
                          .typeId = static_cast<quint32>(row.stringForColumnIndex(1).toInteger()),
                          .enumEntries = {},
                          .lastUpdated = QDateTime::currentDateTimeUtc()});
            m_labels.clear();
        }
        const QString label = row.stringForColumnIndex(2).toText();
        const qsizetype known = m_labels.size();
        m_labels.insert(label);
        if (m_labels.size() > known)
            types.last().enumEntries.append({.display = label, .value = label});
    }

    Types types;

private:
    QSet<QString> m_labels;
};

// Nothing when the server has no enumerations or the query fails.
std::optional<Types> load(DabroDatabaseClient &client, DXError *error)
{
    const auto version = QVersionNumber::fromString(client.serverVersion());
    if (!version.isNull() && version < QVersionNumber(8, 3)) {
        DXLog(QStringLiteral("Database version is older than 8.3. Not loading enum details."));
        return {};
    }
    RowReader reader;
    DXError failure;
    PostgresCatalogueReader::read(
        client, PostgresSystemDatabaseQueries::queryByTitle(QStringLiteral("List_EnumDetails")),
        [&reader](const DatabaseResultSet &row) { reader.read(row); }, &failure);
    if (!failure)
        return std::move(reader.types);
    DXError::report(error, failure);
    return {};
}

bool isSame(const PostgresEnumTypeHelper::EnumTypes &before, const Types &now)
{
    return before
           && std::equal(before->begin(), before->end(), now.begin(), now.end(),
                         [](const auto &left, const auto &right) {
                             return left.typeId == right.typeId && left.typeName == right.typeName
                                    && left.enumEntries == right.enumEntries;
                         });
}

} // namespace

PostgresEnumTypeHelper::EnumTypes
PostgresEnumTypeHelper::enumTypesForDatabaseConnection(const DabroDBC &details)
{
    const std::lock_guard lock(store().mutex);
    return store().postgresEnumTypeDictionariesForConnection.value(details.description());
}

void PostgresEnumTypeHelper::requestEnumTypesForDatabaseConnection(const DabroDBC &details,
                                                                   RequiresUpdate requiresUpdate)
{
    if (details.database().isEmpty())
        return;
    const QString server = details.host() + u':' + QString::number(details.port());
    requests().add(server, [details = details.copy(), requiresUpdate](Pooled allowPooled) {
        const EnumTypes existing = enumTypesForDatabaseConnection(*details);
        if (!existing || requiresUpdate == RequiresUpdate::Yes)
            loadAndStore(*details, existing, allowPooled == Pooled::Yes);
    });
}

void PostgresEnumTypeHelper::doGetEnumTypesForDatabaseConnection(const DabroDBC &details,
                                                                 const EnumTypes &existingDetails)
{
    loadAndStore(details, existingDetails, true);
}

void PostgresEnumTypeHelper::loadAndStore(const DabroDBC &details, const EnumTypes &existingDetails,
                                          bool isPooled)
{
    DX_ASSERT_BACKGROUND();
    std::optional<Types> types;
    DXError error;
    DabroDatabaseConnectionPool::executeQuery(
        [&types](DabroDatabaseClient &client, DXError *slot) { types = load(client, slot); },
        details, &error,
        {.allowPooled = isPooled ? Pooled::Yes : Pooled::No,
         .isUserQuery = DabroDatabaseConnectionPool::IsUserQuery::No});
    if (error)
        DXLog(
            QStringLiteral("List_EnumDetails had no entries. Error: %1.").arg(error.description()));
    if (!types)
        return;
    const QString key = details.description();
    const bool isNews = !isSame(existingDetails, *types);
    {
        const std::lock_guard lock(store().mutex);
        store().postgresEnumTypeDictionariesForConnection.insert(
            key, std::make_shared<const Types>(*std::move(types)));
    }
    if (isNews)
        DXDispatch::main([key] {
            DXNotificationCenter::sharedInstance().post(PostgresEnumTypeHelperNotificationName(),
                                                        nullptr, {{connectionKey(), key}});
        });
}

QString PostgresEnumTypeHelper::PostgresEnumTypeHelperNotificationName()
{
    return DXProductName(u"PostgresEnumTypeHelperNotificationName");
}

QString PostgresEnumTypeHelper::connectionKey()
{
    return DXProductName(u"connection");
}
