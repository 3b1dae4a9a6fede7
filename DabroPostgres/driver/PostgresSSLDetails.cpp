// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresSSLDetails.h"

#include <algorithm>

namespace
{

constexpr QLatin1String sslModeKey("sslMode");
constexpr QLatin1String clientKeyFileKey("clientKeyFile");
constexpr QLatin1String clientCertificateKey("clientCertificate");
constexpr QLatin1String serverRootCertificateKey("serverRootCertificate");
constexpr QLatin1String serverRevocationListKey("serverRevocationList");
constexpr QLatin1String sslCompressionKey("sslCompression");

bool isSameObject(const QString &left, const QString &right)
{
    return left.isNull() == right.isNull() && left.constData() == right.constData()
           && left.size() == right.size();
}

bool isSameText(const QString &left, const QString &right)
{
    return left.isNull() == right.isNull() && left == right;
}

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

const std::array<QString, 6> &PostgresSSLDetails::modes()
{
    static const std::array<QString, 6> texts{
        QStringLiteral("disable"), QStringLiteral("allow"),     QStringLiteral("prefer"),
        QStringLiteral("require"), QStringLiteral("verify-ca"), QStringLiteral("verify-full")};
    return texts;
}

QString PostgresSSLDetails::canonicalMode(const QString &mode)
{
    const auto found = std::find(modes().begin(), modes().end(), mode);
    return found == modes().end() ? mode : *found;
}

QCborMap PostgresSSLDetails::encode() const
{
    return {{sslModeKey, archived(m_sslMode)},
            {clientKeyFileKey, archived(m_clientKeyFile)},
            {clientCertificateKey, archived(m_clientCertificate)},
            {serverRootCertificateKey, archived(m_serverRootCertificate)},
            {serverRevocationListKey, archived(m_serverRevocationList)},
            {sslCompressionKey, m_sslCompression}};
}

PostgresSSLDetails PostgresSSLDetails::decode(const QCborMap &archive)
{
    PostgresSSLDetails details;
    details.m_sslMode = canonicalMode(unarchived(archive.value(sslModeKey)));
    details.m_clientKeyFile = unarchived(archive.value(clientKeyFileKey));
    details.m_clientCertificate = unarchived(archive.value(clientCertificateKey));
    details.m_serverRootCertificate = unarchived(archive.value(serverRootCertificateKey));
    details.m_serverRevocationList = unarchived(archive.value(serverRevocationListKey));
    details.m_sslCompression = archive.value(sslCompressionKey).toBool();
    return details;
}

bool PostgresSSLDetails::isEqual(const PostgresSSLDetails &other) const
{
    return isSameObject(m_sslMode, other.m_sslMode) && m_sslCompression == other.m_sslCompression
           && isSameText(m_clientKeyFile, other.m_clientKeyFile)
           && isSameText(m_clientCertificate, other.m_clientCertificate)
           && isSameText(m_serverRootCertificate, other.m_serverRootCertificate)
           && isSameText(m_serverRevocationList, other.m_serverRevocationList);
}
