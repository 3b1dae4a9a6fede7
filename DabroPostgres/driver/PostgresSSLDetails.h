// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCborMap>
#include <QString>

#include <array>

/// How a connection uses TLS. A plain record, copied by value: a copy shares its texts.
///
/// The four files are secure-path tokens of the host (DXSecurityBookmarkHelper), turned into paths
/// only when a connection string is made.
class PostgresSSLDetails final
{
public:
    /// The modes of libpq, weakest first (libpq, "SSL Support"): the one set of texts that records
    /// use.
    static const std::array<QString, 6> &modes();
    /// The text of modes() that equals mode; mode itself when none does.
    static QString canonicalMode(const QString &mode);

    QString sslMode() const { return m_sslMode; }
    /// Keeps mode as the very text object given: isEqual() looks at its identity.
    void setSslMode(const QString &mode) { m_sslMode = mode; }
    QString clientKeyFile() const { return m_clientKeyFile; }
    void setClientKeyFile(const QString &token) { m_clientKeyFile = token; }
    QString clientCertificate() const { return m_clientCertificate; }
    void setClientCertificate(const QString &token) { m_clientCertificate = token; }
    QString serverRootCertificate() const { return m_serverRootCertificate; }
    void setServerRootCertificate(const QString &token) { m_serverRootCertificate = token; }
    QString serverRevocationList() const { return m_serverRevocationList; }
    void setServerRevocationList(const QString &token) { m_serverRevocationList = token; }
    bool sslCompression() const { return m_sslCompression; }
    void setSslCompression(bool compression) { m_sslCompression = compression; }

    /// Archives the fields under their own names; the mode comes back as one of modes().
    QCborMap encode() const;
    static PostgresSSLDetails decode(const QCborMap &archive);

    /// Compares the mode by the identity of its text object, the rest by content; absent (null) and
    /// empty files differ.
    bool isEqual(const PostgresSSLDetails &other) const;

private:
    QString m_sslMode;
    QString m_clientKeyFile;
    QString m_clientCertificate;
    QString m_serverRootCertificate;
    QString m_serverRevocationList;
    bool m_sslCompression = false;
};
