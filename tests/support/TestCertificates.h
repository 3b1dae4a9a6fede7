// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// Certificates for tests, made by the openssl program: an authority, what it signed, and lists of
/// what it revoked. All are PEM files, the keys readable by nobody but us; they go with this
/// object. A failure of openssl fails the running test. [any]
class TestCertificates final
{
public:
    TestCertificates();

    struct Pair
    {
        QString certificate;
        QString key;
    };
    QString authority() const { return file(QStringLiteral("root.crt")); }
    /// An authority that signed nothing here.
    QString foreignAuthority() const { return file(QStringLiteral("foreign.crt")); }

    /// A server that is called localhost and serverName(); no address is in its certificate.
    Pair server() const { return pair(QStringLiteral("server")); }
    /// A name that no resolver knows.
    static QString serverName() { return QStringLiteral("database.dabro.test"); }
    /// A client that is called clientName(), as is the revoked one.
    Pair client() const { return pair(QStringLiteral("client")); }
    Pair revokedClient() const { return pair(QStringLiteral("revoked")); }
    static QString clientName() { return QStringLiteral("dba"); }

    /// Lists that the authority signed: the one revokes revokedClient(), the other server().
    QString clientRevocationList() const { return file(QStringLiteral("clients.crl")); }
    QString serverRevocationList() const { return file(QStringLiteral("servers.crl")); }

private:
    QString file(const QString &name) const { return m_folder.filePath(name); }
    Pair pair(const QString &name) const;
    void openssl(const QStringList &arguments) const;
    void makeCertificate(const QString &name, const QString &subject,
                         const QStringList &extensions) const;
    void makeRevocationList(const QString &list, const QString &revoked) const;

    QTemporaryDir m_folder;
};
