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
#include <QSet>
#include <QVersionNumber>

#include <algorithm>
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
    DXDispatch::background([details = details.copy(), requiresUpdate] {
        const EnumTypes existing = enumTypesForDatabaseConnection(*details);
        if (!existing || requiresUpdate == RequiresUpdate::Yes)
            doGetEnumTypesForDatabaseConnection(*details, existing);
    });
}

void PostgresEnumTypeHelper::doGetEnumTypesForDatabaseConnection(const DabroDBC &details,
                                                                 const EnumTypes &existingDetails)
{
    DX_ASSERT_BACKGROUND();
    std::optional<Types> types;
    DXError error;
    DabroDatabaseConnectionPool::executeQuery(
        [&types](DabroDatabaseClient &client, DXError *slot) { types = load(client, slot); },
        details, &error, {.isUserQuery = DabroDatabaseConnectionPool::IsUserQuery::No});
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
