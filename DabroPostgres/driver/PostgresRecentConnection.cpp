// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresRecentConnection.h"

#include "client/DXCborTexts.h"
#include "client/SQLRecentConnectionList.h"
#include "client/secrets/DXSecretStore.h"
#include "driver/PostgresConnectionHelper.h"
#include "driver/PostgresDatabaseConnectionDetails.h"

namespace
{

constexpr QLatin1String sslKey("sslDetails");
constexpr QLatin1String groupKey("groupSchemas");
constexpr QLatin1String parametersKey("connectionParameters");

std::shared_ptr<PostgresSSLDetails> copyOf(const std::shared_ptr<PostgresSSLDetails> &details)
{
    return details ? std::make_shared<PostgresSSLDetails>(*details) : nullptr;
}

} // namespace

SQLRecentConnectionList &PostgresRecentConnection::savedConnections()
{
    static SQLRecentConnectionList list({
        .key = QStringLiteral("PostgresRecentConnections"),
        .createRecord = [] { return std::make_shared<PostgresRecentConnection>(); },
        .store = DXSecretStore::sharedInstance(),
    });
    return list;
}

std::shared_ptr<DabroDBC> PostgresRecentConnection::createDatabaseConnectionDetails() const
{
    auto details = std::make_shared<PostgresDatabaseConnectionDetails>();
    fill(*details);
    details->setSslDetails(copyOf(m_sslDetails));
    details->setConnectionParameters(m_connectionParameters);
    return details;
}

void PostgresRecentConnection::copyFrom(const SQLRecentConnection &other)
{
    SQLRecentConnection::copyFrom(other);
    const auto &connection = static_cast<const PostgresRecentConnection &>(other);
    m_sslDetails = copyOf(connection.m_sslDetails);
    m_connectionParameters = connection.m_connectionParameters;
    m_groupSchemas = connection.m_groupSchemas;
}

void PostgresRecentConnection::didLoad()
{
    SQLRecentConnection::didLoad();
    PostgresConnectionHelper::sharedInstance().setGroupBySchemaForId(m_groupSchemas,
                                                                     connectionId());
}

QCborMap PostgresRecentConnection::encode() const
{
    QCborMap archive = SQLRecentConnection::encode();
    archive.insert(groupKey, m_groupSchemas);
    if (m_sslDetails)
        archive.insert(sslKey, m_sslDetails->encode());
    if (!m_connectionParameters.isEmpty())
        archive.insert(parametersKey, DXCborTexts::encode(m_connectionParameters));
    return archive;
}

void PostgresRecentConnection::decode(const QCborMap &archive)
{
    SQLRecentConnection::decode(archive);
    m_groupSchemas = archive.value(groupKey).toBool();
    m_connectionParameters = DXCborTexts::decode(archive.value(parametersKey).toMap());
    const QCborValue ssl = archive.value(sslKey);
    m_sslDetails =
        ssl.isMap() ? std::make_shared<PostgresSSLDetails>(PostgresSSLDetails::decode(ssl.toMap()))
                    : nullptr;
}
