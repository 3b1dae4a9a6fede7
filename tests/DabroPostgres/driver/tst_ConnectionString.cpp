// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXHostCache.h"
#include "client/ssh/DXSSHTunnel.h"
#include "core/DXLogHelper.h"
#include "driver/PostgresDatabaseClient.h"

#include <gtest/gtest.h>

#include <functional>

namespace
{

using Details = PostgresDatabaseConnectionDetails;

std::shared_ptr<Details> dba()
{
    auto details = std::make_shared<Details>();
    details->setUsername(QStringLiteral("dba"));
    details->setHost(QStringLiteral("dbhost"));
    details->setPort(5432);
    return details;
}

std::shared_ptr<PostgresSSLDetails> ssl(const QString &mode)
{
    auto details = std::make_shared<PostgresSSLDetails>();
    details->setSslMode(mode);
    return details;
}

TEST(ConnectionString, namesWhatTheRecordHolds)
{
    DXHostCache::sharedInstance().clear();
    DXHostCache::sharedInstance().setAddress(QStringLiteral("10.0.0.5"), QStringLiteral("dbhost"));
    struct Case
    {
        const char *name;
        std::function<void(Details &)> change;
        const char *expected;
    };
    const std::initializer_list<Case> cases{
        {"neither database nor password", [](Details &) {},
         "port=5432 host='10.0.0.5' user='dba' sslmode=prefer"},
        {"database and password",
         [](Details &d) {
             d.setDatabase(QStringLiteral("shop"));
             d.setPassword(QStringLiteral("pw"));
         },
         "dbname='shop' port=5432 host='10.0.0.5' user='dba' password='pw' sslmode=prefer"},
        {"nothing at all",
         [](Details &d) {
             d.setHost(QString());
             d.setPort(0);
             d.setUsername(QStringLiteral(""));
         },
         "sslmode=prefer"},
        {"a socket folder", [](Details &d) { d.setHost(QStringLiteral("/run/postgresql")); },
         "port=5432 host='/run/postgresql' user='dba' sslmode=prefer"},
        {"apostrophe and backslash in the password",
         [](Details &d) { d.setPassword(QStringLiteral("it's\\x")); },
         "port=5432 host='10.0.0.5' user='dba' password='it\\'s\\\\\\'x' sslmode=prefer"},
        {"TLS off hides the files",
         [](Details &d) {
             d.setSslDetails(ssl(QStringLiteral("disable")));
             d.sslDetails()->setClientCertificate(QStringLiteral("/c"));
         },
         "port=5432 host='10.0.0.5' user='dba' sslmode=disable"},
        {"a revocation list alone",
         [](Details &d) {
             d.setSslDetails(ssl(QStringLiteral("require")));
             d.sslDetails()->setServerRevocationList(QStringLiteral("/crl"));
         },
         "port=5432 host='10.0.0.5' user='dba' sslmode=require sslcompression=0"},
        {"every file",
         [](Details &d) {
             d.setSslDetails(ssl(QStringLiteral("verify-full")));
             d.sslDetails()->setSslCompression(true);
             d.sslDetails()->setClientCertificate(QStringLiteral("/c's"));
             d.sslDetails()->setClientKeyFile(QStringLiteral("/k"));
             d.sslDetails()->setServerRootCertificate(QStringLiteral("/r"));
             d.sslDetails()->setServerRevocationList(QStringLiteral("/crl"));
         },
         "port=5432 host='10.0.0.5' user='dba' sslmode=verify-full sslcompression=1 "
         "sslcert='/c\\'s' sslkey='/k' sslrootcert='/r' sslcrl='/crl'"},
        {"further parameters, whatever they hold",
         [](Details &d) {
             d.setConnectionParameters({{QStringLiteral("krbsrvname"), QStringLiteral("it's \\ x")},
                                        {QStringLiteral("connect_timeout"), QStringLiteral("10")}});
         },
         "port=5432 host='10.0.0.5' user='dba' sslmode=prefer connect_timeout='10' "
         "krbsrvname='it\\'s \\\\ x'"},
    };
    for (const Case &oneCase : cases) {
        const auto details = dba();
        oneCase.change(*details);
        const PostgresDatabaseClient client(details);
        EXPECT_EQ(client.generateConnectionString(nullptr, details->database()),
                  QString::fromLatin1(oneCase.expected))
            << oneCase.name;
    }
}

TEST(ConnectionString, isLoggedWithoutThePassword)
{
    for (const char *const password :
         {"pw", "it's", "back\\slash", "\\", "'", "user='dba'", "pass"}) {
        const auto details = dba();
        details->setHost(QStringLiteral("10.0.0.5"));
        details->setPassword(QString::fromLatin1(password));
        QString logged;
        const auto observer = DXLogHelper::sharedInstance().observeLines(
            [&logged](const QString &line) { logged += line; });
        const PostgresDatabaseClient client(details);
        logged.clear();
        client.generateConnectionString(nullptr, QString());
        EXPECT_TRUE(logged.contains(QLatin1String("<password>"))) << qPrintable(logged);
        EXPECT_FALSE(logged.contains(QLatin1String("<<"))) << qPrintable(logged);
        EXPECT_FALSE(logged.contains(
            PostgresDatabaseClient::escapeConnectionStringEntry(details->password())))
            << qPrintable(logged);
    }
}

TEST(ConnectionString, routineConnectionErrorsAreNotReported)
{
    int reported = 0;
    const auto observer = DXLogHelper::sharedInstance().observeErrors(
        [&reported](const DXError &, const QVariantMap &) { ++reported; });
    for (const char *const text : {"could not connect: Operation timed out",
                                   "FATAL:  pg_hba.conf rejects connection", "else"})
        PostgresDatabaseClient::reportError({QString(), 0, QString::fromLatin1(text)}, QString());
    EXPECT_EQ(reported, 1);
}

} // namespace
