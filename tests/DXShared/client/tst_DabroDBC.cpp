// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DabroDBC.h"

#include "support/FakeDBC.h"

#include <QCborArray>

#include <gtest/gtest.h>

namespace
{

FakeDBC filledRecord()
{
    FakeDBC record;
    record.setConnectionId(QStringLiteral("id"));
    record.setAlias(QStringLiteral("Größe"));
    record.setUsername(QStringLiteral("dba"));
    record.setPassword(QStringLiteral("s3cret-Ä"));
    record.setHost(QStringLiteral("db1"));
    record.setDatabase(QStringLiteral(""));
    record.setPort(65535);
    record.setConnectionSessionPreferences({{QStringLiteral("timezone"), QStringLiteral("UTC")}});
    record.setSshTunnelModel(std::make_shared<DXSSHTunnelModel>(DXSSHTunnelModel{
        .host = QStringLiteral("jump"), .port = 2222, .identityFile = QStringLiteral("/key")}));
    return record;
}

TEST(DabroDBC, comesBackFromItsArchive)
{
    const FakeDBC record = filledRecord();
    QCborMap archive;
    record.encode(archive);
    FakeDBC read;
    read.decode(QCborValue::fromCbor(QCborValue(archive).toCbor()).toMap());

    EXPECT_EQ(read.connectionId(), record.connectionId());
    EXPECT_EQ(read.alias(), record.alias());
    EXPECT_EQ(read.username(), record.username());
    EXPECT_EQ(read.password(), record.password());
    EXPECT_EQ(read.host(), record.host());
    EXPECT_FALSE(read.database().isNull());
    EXPECT_EQ(read.port(), record.port());
    EXPECT_EQ(read.connectionSessionPreferences(), record.connectionSessionPreferences());
    ASSERT_TRUE(read.sshTunnelModel());
    EXPECT_EQ(*read.sshTunnelModel(), *record.sshTunnelModel());
}

TEST(DabroDBC, keepsWhatItsArchiveDoesNotTell)
{
    QCborMap archive;
    FakeDBC().encode(archive);
    FakeDBC absent;
    absent.decode(archive);
    EXPECT_TRUE(absent.password().isNull());
    EXPECT_FALSE(absent.sshTunnelModel());

    FakeDBC record = filledRecord();
    record.decode({{QStringLiteral("host"), 17},
                   {QStringLiteral("port"), 70000},
                   {QStringLiteral("connectionSessionPreferences"), QStringLiteral("x")},
                   {QStringLiteral("sshTunnelModel"), QCborArray()}});
    EXPECT_EQ(record.host(), QStringLiteral("db1"));
    EXPECT_EQ(record.port(), 65535);
    EXPECT_EQ(record.connectionSessionPreferences().size(), 1);
    EXPECT_TRUE(record.sshTunnelModel());
}

TEST(DabroDBC, copiesTheTunnelToo)
{
    const FakeDBC record = filledRecord();
    const std::shared_ptr<DabroDBC> copy = record.copy();
    EXPECT_EQ(copy->sessionKey(), record.sessionKey());
    copy->sshTunnelModel()->host = QStringLiteral("other");
    EXPECT_EQ(record.sshTunnelModel()->host, QStringLiteral("jump"));
}

TEST(DabroDBC, keysSessionsByAllThatMakesThem)
{
    using Change = void (*)(FakeDBC &);
    const QByteArray key = filledRecord().sessionKey();
    const std::initializer_list<Change> changes{
        [](FakeDBC &r) { r.setUsername(QStringLiteral("other")); },
        [](FakeDBC &r) { r.setPassword(QStringLiteral("other")); },
        [](FakeDBC &r) { r.setPassword(QString()); },
        [](FakeDBC &r) { r.setHost(QStringLiteral("other")); },
        [](FakeDBC &r) { r.setDatabase(QStringLiteral("other")); },
        [](FakeDBC &r) { r.setPort(1); },
        [](FakeDBC &r) { r.setConnectionSessionPreferences({}); },
        [](FakeDBC &r) { r.sshTunnelModel()->port = 1; },
        [](FakeDBC &r) { r.setSshTunnelModel(nullptr); },
        [](FakeDBC &r) {
            r.setUsername(QStringLiteral("db"));
            r.setHost(QStringLiteral("adb1"));
        },
    };
    int number = 0;
    for (const Change change : changes) {
        FakeDBC record = filledRecord();
        change(record);
        EXPECT_NE(record.sessionKey(), key) << "change " << number;
        ++number;
    }

    FakeDBC renamed = filledRecord();
    renamed.setAlias(QStringLiteral("other"));
    renamed.setConnectionId(QString());
    EXPECT_EQ(renamed.sessionKey(), key);
    EXPECT_FALSE(key.contains("s3cret"));
}

} // namespace
