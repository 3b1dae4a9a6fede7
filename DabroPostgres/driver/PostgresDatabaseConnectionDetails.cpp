// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresDatabaseConnectionDetails.h"

#include "client/DXCborTexts.h"
#include "driver/PostgresWordLists.h"

#include <QCborArray>
#include <QCborValue>
#include <QCryptographicHash>

namespace
{

constexpr QLatin1String sslDetailsKey("sslDetails");
constexpr QLatin1String parametersKey("connectionParameters");

bool isPresentAndEqual(const QString &own, const QString &other)
{
    return !own.isNull() && !other.isNull() && own == other;
}

} // namespace

PostgresDatabaseConnectionDetails::PostgresDatabaseConnectionDetails(
    const PostgresDatabaseConnectionDetails &other)
    : DabroDBC(other)
    , m_sslDetails(other.m_sslDetails ? std::make_shared<PostgresSSLDetails>(*other.m_sslDetails)
                                      : nullptr)
    , m_connectionParameters(other.m_connectionParameters)
{ }

std::shared_ptr<DabroDBC> PostgresDatabaseConnectionDetails::copy() const
{
    return std::shared_ptr<DabroDBC>(new PostgresDatabaseConnectionDetails(*this));
}

QString PostgresDatabaseConnectionDetails::description() const
{
    const QString server =
        QStringLiteral("%1@@%2:%3").arg(username(), host(), QString::number(port()));
    return database().isEmpty() ? server : server + QStringLiteral(" - ") + database();
}

bool PostgresDatabaseConnectionDetails::isEqualToDatabaseConnectionDetails(
    const DabroDBC &other) const
{
    const auto *const record = dynamic_cast<const PostgresDatabaseConnectionDetails *>(&other);
    if (!record)
        return false;
    if (!isPresentAndEqual(connectionId(), record->connectionId())
        || !isPresentAndEqual(host(), record->host())
        || !isPresentAndEqual(username(), record->username())
        || !isPresentAndEqual(password(), record->password()) || port() != record->port())
        return false;
    if (!database().isNull() && !record->database().isNull() && database() != record->database())
        return false;
    if (!m_sslDetails || !record->m_sslDetails)
        return !m_sslDetails && !record->m_sslDetails;
    return m_sslDetails->isEqual(*record->m_sslDetails);
}

QByteArray PostgresDatabaseConnectionDetails::sessionKey() const
{
    const QCborArray parts{m_sslDetails ? QCborValue(m_sslDetails->encode()) : QCborValue(),
                           DXCborTexts::encode(m_connectionParameters)};
    return DabroDBC::sessionKey()
           + QCryptographicHash::hash(QCborValue(parts).toCbor(), QCryptographicHash::Sha256);
}

bool PostgresDatabaseConnectionDetails::needsHostName() const
{
    static const QStringList modes{QStringLiteral("require"), QStringLiteral("verify-ca"),
                                   QStringLiteral("verify-full")};
    return password().isEmpty() || !m_connectionParameters.isEmpty()
           || (m_sslDetails && modes.contains(m_sslDetails->sslMode()));
}

const QStringList &PostgresDatabaseConnectionDetails::keywords()
{
    return PostgresWordLists::sharedInstance().keywords();
}

QStringList PostgresDatabaseConnectionDetails::sqlFunctions() const
{
    return PostgresWordLists::sharedInstance().functions();
}

QStringList PostgresDatabaseConnectionDetails::functionsAndKeywords() const
{
    return PostgresWordLists::sharedInstance().functionsAndKeywords();
}

void PostgresDatabaseConnectionDetails::encode(QCborMap &archive) const
{
    DabroDBC::encode(archive);
    if (m_sslDetails)
        archive.insert(sslDetailsKey, m_sslDetails->encode());
    if (!m_connectionParameters.isEmpty())
        archive.insert(parametersKey, DXCborTexts::encode(m_connectionParameters));
}

void PostgresDatabaseConnectionDetails::decode(const QCborMap &archive)
{
    DabroDBC::decode(archive);
    const QCborValue tls = archive.value(sslDetailsKey);
    if (tls.isMap())
        m_sslDetails =
            std::make_shared<PostgresSSLDetails>(PostgresSSLDetails::decode(tls.toMap()));
    if (const QCborValue parameters = archive.value(parametersKey); parameters.isMap())
        m_connectionParameters = DXCborTexts::decode(parameters.toMap());
}
