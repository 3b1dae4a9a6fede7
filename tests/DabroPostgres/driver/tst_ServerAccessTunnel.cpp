// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/driver/ServerAccess.h"
#include "client/ssh/DXSSHTunnel.h"
#include "support/DXWait.h"
#include "support/PrintQt.h"
#include "support/TestSshServer.h"

#include <QRegularExpression>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace ServerAccess;

namespace
{

// A server that is reached through an SSH server beside it.
class ServerAccessTunnel : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_cluster = std::make_unique<PostgresCluster>(PostgresCluster::Options{
            .hba = {QStringLiteral("local all all trust"),
                    QStringLiteral("host all keeper 127.0.0.1/32 scram-sha-256"),
                    QStringLiteral("host all all 127.0.0.1/32 trust")},
            .tcp = true});
        s_ssh = std::make_unique<TestSshServer>();
    }
    static void TearDownTestSuite()
    {
        s_ssh.reset();
        s_cluster.reset();
    }
    static Record recordThrough(const QString &keyFile)
    {
        Record details = recordOnLoopback(*s_cluster);
        details->setSshTunnelModel(std::make_shared<DXSSHTunnelModel>(
            DXSSHTunnelModel{.host = QStringLiteral("127.0.0.1"),
                             .port = s_ssh->port(),
                             .username = s_ssh->username(),
                             .identityFile = keyFile,
                             .configurationFile = s_ssh->configurationFile()}));
        return details;
    }
    static qsizetype logins() { return s_ssh->log().count(QStringLiteral("Accepted publickey")); }
    // The ports of the connections that were opened to 127.0.0.1, oldest first.
    static QStringList portsIn(const LoggedTexts &logged)
    {
        QStringList ports;
        static const QRegularExpression port(QStringLiteral("port=(\\d+) host='127.0.0.1'"));
        for (const QString &text : logged.texts()) {
            if (const auto match = port.match(text); match.hasMatch())
                ports.append(match.captured(1));
        }
        return ports;
    }
    static bool isOpen(const QString &port)
    {
        QTcpSocket socket;
        socket.connectToHost(QStringLiteral("127.0.0.1"), port.toUShort());
        return socket.waitForConnected(30'000);
    }

    static inline std::unique_ptr<PostgresCluster> s_cluster;
    static inline std::unique_ptr<TestSshServer> s_ssh;
};

TEST_F(ServerAccessTunnel, carriesTheConnectionAndEndsWithIt)
{
    const LoggedTexts logged;
    const qsizetype before = logins();
    const auto client = connected(recordThrough(s_ssh->keyFile()));
    EXPECT_EQ(scalar(*client, QStringLiteral("SELECT inet_server_port()")),
              QString::number(s_cluster->port()));
    const QStringList ports = portsIn(logged);
    ASSERT_EQ(ports.size(), 1);
    EXPECT_NE(ports.first(), QString::number(s_cluster->port()));
    EXPECT_EQ(logins() - before, 1);
    EXPECT_EQ(scalar(*client, QStringLiteral("SELECT sum(length(repeat('x', 1000)))"
                                             " FROM generate_series(1, 10000)")),
              u"10000000");

    client->disconnect();
    EXPECT_FALSE(isOpen(ports.first()));
}

TEST_F(ServerAccessTunnel, opensAnotherForTheDatabasePostgres)
{
    s_cluster->psql(QStringLiteral("CREATE ROLE lonely LOGIN"));
    const Record details = recordThrough(s_ssh->keyFile());
    details->setUsername(QStringLiteral("lonely"));
    details->setDatabase(QString());
    const LoggedTexts logged;
    const qsizetype before = logins();
    const auto client = connected(details);
    EXPECT_EQ(scalar(*client, QStringLiteral("SELECT current_database()")), u"postgres");
    const QStringList ports = portsIn(logged);
    ASSERT_EQ(ports.size(), 2);
    EXPECT_EQ(logins() - before, 2);
    EXPECT_TRUE(isOpen(ports.last()));
    EXPECT_TRUE(ports.first() == ports.last() || !isOpen(ports.first()));
}

// libpq sees a port of 127.0.0.1 that is another one each time.
TEST_F(ServerAccessTunnel, findsThePasswordOfTheServerBehindIt)
{
    const QString secret = QStringLiteral("it's: a\\ \"key\"");
    s_cluster->psql(QStringLiteral("SET password_encryption = 'scram-sha-256';"
                                   " CREATE ROLE keeper LOGIN PASSWORD '%1'")
                        .arg(QString(secret).replace(u'\'', QStringLiteral("''"))));
    const QTemporaryDir folder;
    const auto write = [&folder](const QString &password) {
        QFile file(folder.filePath(QStringLiteral("pgpass")));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        EXPECT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
        file.write(QStringLiteral("127.0.0.1:%1:*:keeper:%2\n")
                       .arg(QString::number(s_cluster->port()), password)
                       .toUtf8());
        return file.fileName();
    };
    const EnvironmentVariable passfile(
        "PGPASSFILE", write(QString(secret).replace(u'\\', QStringLiteral("\\\\"))));
    const Record details = recordThrough(s_ssh->keyFile());
    details->setUsername(QStringLiteral("keeper"));
    const LoggedTexts logged;
    const auto client = connected(details);
    EXPECT_EQ(scalar(*client, QStringLiteral("SELECT session_user")), u"keeper");
    EXPECT_TRUE(details->password().isNull());
    EXPECT_EQ(logged.texts().filter(QStringLiteral("key\"")), QStringList());

    const QString file = write(QStringLiteral("wrong-one"));
    const Attempt attempt = connect(details);
    EXPECT_FALSE(attempt.isConnected);
    EXPECT_TRUE(attempt.error.description().contains(
        QStringLiteral("password retrieved from file \"%1\"").arg(file)))
        << attempt.error.description().toStdString();
    EXPECT_EQ(logged.texts().filter(QStringLiteral("wrong-one")), QStringList());

    QFile(file).setPermissions(QFile::ReadOwner | QFile::ReadOther);
    EXPECT_TRUE(connect(details).error.description().contains(QStringLiteral("open to others")));
}

TEST_F(ServerAccessTunnel, isNotBypassedWhenItFails)
{
    const LoggedTexts logged;
    const Attempt attempt = connect(recordThrough(s_ssh->strangerKeyFile()));
    EXPECT_FALSE(attempt.isConnected);
    EXPECT_TRUE(attempt.error.description().contains(QStringLiteral("Permission denied")))
        << attempt.error.description().toStdString();
    EXPECT_EQ(portsIn(logged), QStringList());
}

TEST_F(ServerAccessTunnel, saysThatTheServerBehindItIsGone)
{
    s_cluster->stop();
    const Attempt attempt = connect(recordThrough(s_ssh->keyFile()));
    EXPECT_FALSE(attempt.isConnected);
    EXPECT_FALSE(attempt.error.description().isEmpty());
    const QVariant said = attempt.error.details().value(DXSSHTunnel::standardErrorKey());
    EXPECT_TRUE(said.toString().contains(QStringLiteral("Connection refused")));
    s_cluster->start();

    const auto client = connected(recordThrough(s_ssh->keyFile()));
    s_cluster->killHard();
    EXPECT_TRUE(DXWait::until([&client] { return !client->isAlive(); }));
    EXPECT_TRUE(errorOf(*client, QStringLiteral("SELECT 1")));
    s_cluster->start();
}

} // namespace
