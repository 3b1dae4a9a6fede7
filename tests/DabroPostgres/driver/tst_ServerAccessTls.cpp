// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/driver/ServerAccess.h"
#include "client/DXHostCache.h"
#include "support/PrintQt.h"
#include "support/TestCertificates.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace ServerAccess;

namespace
{

const auto anyDatabase = QStringLiteral("postgres");
const auto certificateDatabase = QStringLiteral("certified");
const auto plainDatabase = QStringLiteral("plain");

// A server that takes encrypted connections only, but for one database; another one asks for a
// client certificate.
class ServerAccessTls : public testing::Test
{
protected:
    static const TestCertificates &certificates()
    {
        static const TestCertificates made;
        return made;
    }
    static PostgresCluster &cluster()
    {
        static const auto made = [] {
            auto cluster = std::make_unique<PostgresCluster>(PostgresCluster::Options{
                .hba = {QStringLiteral("hostnossl plain all 127.0.0.1/32 trust"),
                        QStringLiteral("hostssl plain all 127.0.0.1/32 reject"),
                        QStringLiteral("hostssl certified all 127.0.0.1/32 cert"),
                        QStringLiteral("hostssl all all 127.0.0.1/32 trust")},
                .tcp = true,
                .tls =
                    PostgresCluster::Tls{.certificate = certificates().server().certificate,
                                         .key = certificates().server().key,
                                         .authority = certificates().authority(),
                                         .revocationList = certificates().clientRevocationList()}});
            cluster->createDatabase(certificateDatabase);
            cluster->createDatabase(plainDatabase);
            return cluster;
        }();
        return *made;
    }
    static std::shared_ptr<PostgresSSLDetails> tls(const QString &mode)
    {
        auto details = std::make_shared<PostgresSSLDetails>();
        details->setSslMode(PostgresSSLDetails::canonicalMode(mode));
        return details;
    }
    static Record recordOf(const std::shared_ptr<PostgresSSLDetails> &tls,
                           const QString &host = QStringLiteral("127.0.0.1"),
                           const QString &database = anyDatabase)
    {
        Record details = recordOnLoopback(cluster(), database);
        details->setHost(host);
        details->setSslDetails(tls);
        return details;
    }
    static void expectEncrypted(const Record &details, bool isEncrypted = true)
    {
        const auto client = connected(details);
        EXPECT_EQ(scalar(*client, QStringLiteral("SELECT ssl FROM pg_stat_ssl"
                                                 " WHERE pid = pg_backend_pid()")),
                  isEncrypted ? QStringLiteral("True") : QStringLiteral("False"));
    }
    static void expectRefused(const Record &details, const QString &reason)
    {
        const Attempt attempt = connect(details);
        EXPECT_FALSE(attempt.isConnected);
        EXPECT_TRUE(attempt.error.description().contains(reason))
            << '"' << attempt.error.description().toStdString() << "\" lacks \""
            << reason.toStdString() << '"';
    }
};

TEST_F(ServerAccessTls, encryptsAsTheModeSays)
{
    expectEncrypted(recordOf(nullptr));
    expectEncrypted(recordOf(nullptr, QStringLiteral("127.0.0.1"), plainDatabase), false);
    expectEncrypted(recordOf(tls(QStringLiteral("require"))));
    expectRefused(recordOf(tls(QStringLiteral("disable"))), QStringLiteral("no encryption"));
    expectRefused(
        recordOf(tls(QStringLiteral("require")), QStringLiteral("127.0.0.1"), plainDatabase),
        QStringLiteral("pg_hba.conf rejects connection"));
}

TEST_F(ServerAccessTls, fallsBackToTheDatabasePostgresBehindEncryption)
{
    cluster().psql(QStringLiteral("CREATE ROLE lonely LOGIN"));
    for (const auto &details : {recordOf(nullptr), recordOf(tls(QStringLiteral("require")))}) {
        details->setUsername(QStringLiteral("lonely"));
        details->setDatabase(QString());
        expectEncrypted(details);
    }
}

TEST_F(ServerAccessTls, checksWhoSignedTheServer)
{
    const auto details = tls(QStringLiteral("verify-ca"));
    details->setServerRootCertificate(certificates().authority());
    expectEncrypted(recordOf(details));
    details->setServerRootCertificate(certificates().foreignAuthority());
    expectRefused(recordOf(details), QStringLiteral("certificate verify failed"));
}

TEST_F(ServerAccessTls, checksTheServersName)
{
    const auto details = tls(QStringLiteral("verify-full"));
    details->setServerRootCertificate(certificates().authority());
    expectRefused(recordOf(details), QStringLiteral("does not match host name \"127.0.0.1\""));

    // An address found for an earlier connection must not take the place of the name.
    DXHostCache::sharedInstance().setAddress(QStringLiteral("127.0.0.1"),
                                             QStringLiteral("localhost"));
    expectEncrypted(recordOf(details, QStringLiteral("localhost")));
    DXHostCache::sharedInstance().clear();
}

TEST_F(ServerAccessTls, refusesARevokedServerOnlyBesideARootCertificate)
{
    const auto details = tls(QStringLiteral("require"));
    details->setServerRevocationList(certificates().serverRevocationList());
    expectEncrypted(recordOf(details));

    details->setServerRootCertificate(certificates().authority());
    expectRefused(recordOf(details), QStringLiteral("certificate verify failed"));
    details->setServerRevocationList(certificates().clientRevocationList());
    expectEncrypted(recordOf(details));
}

TEST_F(ServerAccessTls, showsTheClientsCertificate)
{
    const auto details = tls(QStringLiteral("require"));
    const Record certified = recordOf(details, QStringLiteral("127.0.0.1"), certificateDatabase);
    expectRefused(certified, QStringLiteral("requires a valid client certificate"));

    const auto show = [&details](const TestCertificates::Pair &pair) {
        details->setClientCertificate(pair.certificate);
        details->setClientKeyFile(pair.key);
    };
    show(certificates().revokedClient());
    expectRefused(certified, QStringLiteral("certificate revoked"));
    show(certificates().client());
    expectEncrypted(certified);

    const QTemporaryDir folder;
    const QString odd = folder.filePath(QStringLiteral("it's  here"));
    ASSERT_TRUE(QDir().mkpath(odd));
    const TestCertificates::Pair moved{odd + QStringLiteral("/a b.crt"),
                                       odd + QStringLiteral("/a b.key")};
    ASSERT_TRUE(QFile::copy(certificates().client().certificate, moved.certificate));
    ASSERT_TRUE(QFile::copy(certificates().client().key, moved.key));
    show(moved);
    expectEncrypted(certified);
}

} // namespace
