// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/SQLRecentConnection.h"

#include "client/DXCborTexts.h"
#include "client/DXDBCTabColorHelper.h"
#include "client/DabroDBC.h"

#include <QUuid>

#include <algorithm>
#include <limits>

namespace
{

constexpr QLatin1String idKey("connectionId");
constexpr QLatin1String aliasKey("alias");
constexpr QLatin1String hostKey("serverHost");
constexpr QLatin1String usernameKey("username");
constexpr QLatin1String databaseKey("database");
constexpr QLatin1String portKey("serverPort");
constexpr QLatin1String dateKey("connectionDate");
constexpr QLatin1String parametersKey("connectionSessionParameters");
constexpr QLatin1String rememberKey("rememberPassword");
constexpr QLatin1String tunnelKey("sshTunnelDetails");
constexpr QLatin1String passwordKey("password");
constexpr QLatin1String colorKey("tabColor");

QCborValue archived(const QString &text)
{
    return text.isNull() ? QCborValue(nullptr) : QCborValue(text);
}

// CBOR reads an empty text back as a null one, which would mean an absent text here.
QString unarchived(const QCborValue &value)
{
    const QString text = value.toString();
    return value.isString() && text.isNull() ? QStringLiteral("") : text;
}

} // namespace

SQLRecentConnection::~SQLRecentConnection() = default;

QString SQLRecentConnection::createConnectionId()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

void SQLRecentConnection::copyFrom(const SQLRecentConnection &other)
{
    m_alias = other.m_alias;
    m_username = other.m_username;
    m_password = other.m_password;
    m_serverHost = other.m_serverHost;
    m_serverPort = other.m_serverPort;
    m_database = other.m_database;
    m_rememberPassword = other.m_rememberPassword;
    m_connectionDate = other.m_connectionDate;
    m_sessionParameters = other.m_sessionParameters;
    m_sshTunnelDetails = other.m_sshTunnelDetails
                             ? std::make_shared<DXSSHTunnelModel>(*other.m_sshTunnelDetails)
                             : nullptr;
    m_tabColor = other.m_tabColor;
}

void SQLRecentConnection::didLoad()
{
    DXDBCTabColorHelper &colors = DXDBCTabColorHelper::sharedInstance();
    colors.setColorFromAliasTemporaryForId(m_alias, m_connectionId);
    colors.setColorForId(m_tabColor, m_connectionId);
}

QString SQLRecentConnection::effectiveTabColor() const
{
    return m_tabColor.isEmpty() ? DXDBCTabColorHelper::colorForAlias(m_alias) : m_tabColor;
}

void SQLRecentConnection::fill(DabroDBC &details) const
{
    details.setConnectionId(m_connectionId);
    details.setAlias(m_alias);
    details.setHost(m_serverHost);
    details.setUsername(m_username);
    details.setPassword(m_password);
    details.setDatabase(m_database);
    details.setPort(m_serverPort);
    details.setConnectionSessionPreferences(m_sessionParameters);
    if (m_sshTunnelDetails)
        details.setSshTunnelModel(std::make_shared<DXSSHTunnelModel>(*m_sshTunnelDetails));
}

QCborMap SQLRecentConnection::encode() const
{
    QCborMap archive{
        {idKey, m_connectionId},
        {aliasKey, archived(m_alias)},
        {hostKey, archived(m_serverHost)},
        {usernameKey, archived(m_username)},
        {databaseKey, archived(m_database)},
        {portKey, m_serverPort},
        {dateKey, QCborValue(m_connectionDate)},
        {parametersKey, DXCborTexts::encode(m_sessionParameters)},
        {rememberKey, m_rememberPassword},
        {passwordKey, archived(m_rememberPassword ? m_password : QStringLiteral(""))},
    };
    if (!m_tabColor.isEmpty())
        archive.insert(colorKey, m_tabColor);
    if (m_sshTunnelDetails)
        archive.insert(tunnelKey, m_sshTunnelDetails->encode());
    return archive;
}

void SQLRecentConnection::decode(const QCborMap &archive)
{
    m_connectionId = archive.value(idKey).toString();
    if (m_connectionId.isEmpty())
        m_connectionId = createConnectionId();
    m_alias = unarchived(archive.value(aliasKey));
    m_serverHost = unarchived(archive.value(hostKey));
    m_username = unarchived(archive.value(usernameKey));
    m_database = unarchived(archive.value(databaseKey));
    m_serverPort = static_cast<quint16>(std::clamp<qint64>(archive.value(portKey).toInteger(), 0,
                                                           std::numeric_limits<quint16>::max()));
    m_connectionDate = archive.value(dateKey).toDateTime();
    m_sessionParameters = DXCborTexts::decode(archive.value(parametersKey).toMap());
    m_rememberPassword = archive.value(rememberKey).toBool();
    m_password = m_rememberPassword ? unarchived(archive.value(passwordKey)) : QStringLiteral("");
    m_tabColor = archive.value(colorKey).toString();
    const QCborValue tunnel = archive.value(tunnelKey);
    m_sshTunnelDetails =
        tunnel.isMap()
            ? std::make_shared<DXSSHTunnelModel>(DXSSHTunnelModel::decode(tunnel.toMap()))
            : nullptr;
}
