// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresDatabaseConnectionDetails.h"

#include "client/DabroDatabaseClient.h"
#include "driver/PostgresDatabaseClient.h"
#include "query/DXQuerySplitter.h"
#include "query/SQLMetadataTokenizerOptions.h"
#include "support/PrintQt.h"

#include <QSet>

#include <functional>
#include <gtest/gtest.h>

namespace
{

using Details = PostgresDatabaseConnectionDetails;

std::shared_ptr<Details> sample()
{
    auto details = std::make_shared<Details>();
    details->setConnectionId(QStringLiteral("id-1"));
    details->setAlias(QStringLiteral("The shop"));
    details->setUsername(QStringLiteral("dba"));
    details->setPassword(QStringLiteral("pw"));
    details->setHost(QStringLiteral("db1"));
    details->setPort(5432);
    details->setDatabase(QStringLiteral("shop"));
    details->setConnectionSessionPreferences(
        {{QStringLiteral("work_mem"), QStringLiteral("'1MB'")}});
    details->setSshTunnelModel(std::make_shared<DXSSHTunnelModel>());
    const auto ssl = std::make_shared<PostgresSSLDetails>();
    ssl->setSslMode(PostgresSSLDetails::modes()[3]);
    ssl->setClientCertificate(QStringLiteral("cert"));
    ssl->setServerRevocationList(QStringLiteral(""));
    details->setSslDetails(ssl);
    details->setConnectionParameters({{QStringLiteral("connect_timeout"), QStringLiteral("10")}});
    return details;
}

TEST(PostgresDatabaseConnectionDetails, describesItselfWithoutThePassword)
{
    const auto details = sample();
    EXPECT_EQ(details->description(), QStringLiteral("dba@@db1:5432 - shop"));
    details->setDatabase(QStringLiteral(""));
    details->setUsername(QStringLiteral("%2"));
    EXPECT_EQ(details->description(), QStringLiteral("%2@@db1:5432"));
}

TEST(PostgresDatabaseConnectionDetails, comparesWhatMakesTheSameLogin)
{
    struct Case
    {
        const char *change;
        std::function<void(Details &left, Details &right)> apply;
        bool isEqual;
    };
    const QString other = QStringLiteral("other");
    const std::initializer_list<Case> cases{
        {"nothing", [](Details &, Details &) {}, true},
        {"alias", [&](Details &l, Details &) { l.setAlias(other); }, true},
        {"preferences", [&](Details &l, Details &) { l.setConnectionSessionPreferences({}); },
         true},
        {"tunnel", [](Details &l, Details &) { l.setSshTunnelModel(nullptr); }, true},
        {"id", [&](Details &l, Details &) { l.setConnectionId(other); }, false},
        {"host", [&](Details &l, Details &) { l.setHost(other); }, false},
        {"user", [&](Details &l, Details &) { l.setUsername(other); }, false},
        {"password", [&](Details &l, Details &) { l.setPassword(other); }, false},
        {"port", [](Details &l, Details &) { l.setPort(1); }, false},
        {"database", [&](Details &l, Details &) { l.setDatabase(other); }, false},
        {"no database on the left", [](Details &l, Details &) { l.setDatabase({}); }, true},
        {"no database on the right", [](Details &, Details &r) { r.setDatabase({}); }, true},
        {"no password on both",
         [](Details &l, Details &r) {
             l.setPassword({});
             r.setPassword({});
         },
         false},
        {"no TLS on the left", [](Details &l, Details &) { l.setSslDetails(nullptr); }, false},
        {"no TLS on the right", [](Details &, Details &r) { r.setSslDetails(nullptr); }, false},
        {"no TLS on both",
         [](Details &l, Details &r) {
             l.setSslDetails(nullptr);
             r.setSslDetails(nullptr);
         },
         true},
        {"TLS file", [&](Details &l, Details &) { l.sslDetails()->setClientKeyFile(other); },
         false},
    };
    for (const auto &[change, apply, isEqual] : cases) {
        const auto left = sample();
        const auto right = sample();
        apply(*left, *right);
        EXPECT_EQ(left->isEqualToDatabaseConnectionDetails(*right), isEqual) << change;
    }
}

TEST(PostgresDatabaseConnectionDetails, copiesDeeply)
{
    const auto details = sample();
    const auto copy = std::dynamic_pointer_cast<Details>(details->copy());
    ASSERT_TRUE(copy);
    EXPECT_TRUE(copy->isEqualToDatabaseConnectionDetails(*details));
    EXPECT_EQ(copy->alias(), details->alias());
    EXPECT_EQ(copy->connectionSessionPreferences(), details->connectionSessionPreferences());
    EXPECT_EQ(copy->connectionParameters(), details->connectionParameters());
    ASSERT_TRUE(copy->sshTunnelModel());

    copy->sshTunnelModel()->host = QStringLiteral("jump");
    copy->sslDetails()->setSslCompression(true);
    EXPECT_EQ(details->sshTunnelModel()->host, QString());
    EXPECT_FALSE(details->sslDetails()->sslCompression());
}

TEST(PostgresDatabaseConnectionDetails, comesBackFromItsArchive)
{
    const auto details = sample();
    QCborMap archive;
    details->encode(archive);
    const QByteArray bytes = QCborValue(archive).toCbor();

    Details read;
    read.decode(QCborValue::fromCbor(bytes).toMap());
    EXPECT_TRUE(read.isEqualToDatabaseConnectionDetails(*details));
    EXPECT_EQ(read.sessionKey(), details->sessionKey());
    ASSERT_TRUE(read.sslDetails());
    EXPECT_TRUE(read.sslDetails()->clientKeyFile().isNull());
    EXPECT_FALSE(read.sslDetails()->serverRevocationList().isNull());

    Details untouched;
    untouched.decode({{QStringLiteral("sslDetails"), 3}});
    EXPECT_FALSE(untouched.sslDetails());
    QCborMap without;
    untouched.encode(without);
    EXPECT_FALSE(without.contains(QStringLiteral("connectionParameters")));
}

TEST(PostgresDatabaseConnectionDetails, sharesSessionsOnlyUnderTheSameTlsAndParameters)
{
    const auto details = sample();
    const auto other = sample();
    EXPECT_EQ(details->sessionKey(), other->sessionKey());
    other->setConnectionParameters({});
    EXPECT_NE(details->sessionKey(), other->sessionKey());
    other->setConnectionParameters(details->connectionParameters());
    other->sslDetails()->setSslMode(PostgresSSLDetails::modes()[0]);
    EXPECT_NE(details->sessionKey(), other->sessionKey());
    other->setSslDetails(nullptr);
    EXPECT_NE(details->sessionKey(), other->sessionKey());
}

TEST(PostgresDatabaseConnectionDetails, needsTheNameForItsCertificateAndItsPasswordFile)
{
    const auto details = sample();
    EXPECT_TRUE(details->needsHostName());
    details->setConnectionParameters({});
    for (const QString &mode : PostgresSSLDetails::modes()) {
        details->sslDetails()->setSslMode(mode);
        const bool asksForTls = mode == u"require" || mode.startsWith(u"verify");
        EXPECT_EQ(details->needsHostName(), asksForTls) << qPrintable(mode);
    }
    details->setSslDetails(nullptr);
    EXPECT_FALSE(details->needsHostName());
    details->setPassword({});
    EXPECT_TRUE(details->needsHostName());
}

TEST(PostgresDatabaseConnectionDetails, givesEachClientACopyOfItsOwn)
{
    const auto details = sample();
    const auto first = details->createNewClient();
    const auto second = details->createNewClient();
    EXPECT_EQ(typeid(*first), details->databaseClientClass());
    EXPECT_NE(first->databaseConnectionDetails(), second->databaseConnectionDetails());
    EXPECT_NE(first->databaseConnectionDetails(), std::shared_ptr<DabroDBC>(details));
    EXPECT_EQ(first->databaseConnectionDetails()->description(), details->description());
}

TEST(PostgresDatabaseConnectionDetails, readsSqlAsPostgresDoes)
{
    const Details details;
    const auto options = details.createPreParserOptions();
    EXPECT_FALSE(options->hashMarksAreComments());
    EXPECT_TRUE(options->allowNestedMultilineComments());
    EXPECT_FALSE(options->includeMSSQLVariables());
    EXPECT_TRUE(details.createQuerySplitter());
}

TEST(PostgresDatabaseConnectionDetails, knowsWordsInOrderAndOnce)
{
    const Details details;
    const QStringList keywords = details.sqlKeywords();
    for (const char *word : {"select", "user", "table", "left", "vacuum"})
        EXPECT_TRUE(keywords.contains(QString::fromLatin1(word))) << word;
    for (const char *word : {"name", "type", "value", "#", ""})
        EXPECT_FALSE(keywords.contains(QString::fromLatin1(word))) << word;
    const QStringList functions = details.sqlFunctions();
    for (const char *word : {"string_agg", "date_bin", "coalesce", "left"})
        EXPECT_TRUE(functions.contains(QString::fromLatin1(word))) << word;

    const QStringList all = details.functionsAndKeywords();
    EXPECT_EQ(all.count(QStringLiteral("left")), 1);
    EXPECT_LT(all.indexOf(QStringLiteral("array")), all.indexOf(QStringLiteral("array_agg")));
    for (const QStringList &list : {keywords, functions, all}) {
        const QSet<QString> words(list.begin(), list.end());
        EXPECT_EQ(words.size(), list.size());
    }
    const QSet<QString> words(all.begin(), all.end());
    EXPECT_TRUE(words.contains(QSet<QString>(keywords.begin(), keywords.end())));
    EXPECT_TRUE(words.contains(QSet<QString>(functions.begin(), functions.end())));
}

} // namespace
