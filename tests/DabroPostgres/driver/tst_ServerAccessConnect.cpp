// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/driver/ServerAccess.h"
#include "driver/connecting/PostgresConnectionStringReader.h"
#include "support/Background.h"
#include "support/PrintQt.h"

#include <QDir>
#include <QTcpServer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

using namespace ServerAccess;

namespace
{

void expectContains(const QString &text, const QString &part)
{
    EXPECT_TRUE(text.contains(part))
        << '"' << text.toStdString() << "\" lacks \"" << part.toStdString() << '"';
}

// A server that listens on 127.0.0.1 and asks for a password there, but for users of the role
// "trusted".
class ServerAccessConnect : public testing::Test
{
protected:
    static PostgresCluster &cluster()
    {
        static const auto made = std::make_unique<PostgresCluster>(PostgresCluster::Options{
            .hba = {QStringLiteral("local all all trust"),
                    QStringLiteral("host all dba 127.0.0.1/32 trust"),
                    QStringLiteral("host all all 127.0.0.1/32 scram-sha-256")},
            .tcp = true,
            .configuration = {QStringLiteral("password_encryption = 'scram-sha-256'")}});
        return *made;
    }
    static QString createRole(const QString &name, const QString &password = {})
    {
        QString quoted = password;
        quoted.replace(u'\'', QStringLiteral("''"));
        cluster().psql(QStringLiteral("DROP ROLE IF EXISTS %1; CREATE ROLE %1 LOGIN PASSWORD '%2'")
                           .arg(name, quoted));
        return name;
    }
};

TEST_F(ServerAccessConnect, reachesTheServerUnderEveryNameOfIt)
{
    for (const QString &host :
         {cluster().socketFolder(), QStringLiteral("127.0.0.1"), QStringLiteral("localhost")}) {
        const Record details = record(cluster());
        details->setHost(host);
        const auto client = connected(details);
        EXPECT_TRUE(client->isConnected());
        EXPECT_TRUE(client->isAlive());
        EXPECT_EQ(client->postgresVersion(),
                  scalar(*client, QStringLiteral("SHOW server_version")).section(u' ', 0, 0));
        EXPECT_EQ(scalar(*client, QStringLiteral("SELECT inet_client_addr() IS NULL")),
                  host.startsWith(u'/') ? QStringLiteral("True") : QStringLiteral("False"));
        client->disconnect();
        EXPECT_FALSE(client->isConnected());
        EXPECT_FALSE(client->isAlive());
    }
}

// An option of this process's only TCP connection to port; -1 when there is none.
int tcpOption(int option, quint16 port)
{
    const QStringList descriptors = QDir(QStringLiteral("/proc/self/fd")).entryList();
    for (const QString &descriptor : descriptors) {
        sockaddr_in peer{};
        socklen_t size = sizeof(peer);
        const int socket = descriptor.toInt();
        if (::getpeername(socket, reinterpret_cast<sockaddr *>(&peer), &size) != 0
            || peer.sin_family != AF_INET || ntohs(peer.sin_port) != port)
            continue;
        int value = -1;
        size = sizeof(value);
        ::getsockopt(socket, IPPROTO_TCP, option, &value, &size);
        return value;
    }
    return -1;
}

// Whoever waits for the answer when the network is cut waits as long.
TEST_F(ServerAccessConnect, waitsAMinuteForASilentNetworkUnlessTold)
{
    {
        const auto client = connected(recordOnLoopback(cluster()));
        EXPECT_EQ(tcpOption(TCP_USER_TIMEOUT, cluster().port()), 60000);
        // It is asked whether it is still there before that.
        EXPECT_LT(tcpOption(TCP_KEEPIDLE, cluster().port()), 60);
    }
    const QTemporaryDir folder;
    QFile services(folder.filePath(QStringLiteral("services")));
    ASSERT_TRUE(services.open(QFile::WriteOnly));
    services.write("[patient]\ntcp_user_timeout=7000\n");
    services.close();
    const EnvironmentVariable file("PGSERVICEFILE", services.fileName());
    const EnvironmentVariable service("PGSERVICE", QStringLiteral("patient"));
    const auto client = connected(recordOnLoopback(cluster()));
    EXPECT_EQ(tcpOption(TCP_USER_TIMEOUT, cluster().port()), 7000);
    client->disconnect();

    const Record told = recordOnLoopback(cluster());
    told->setConnectionParameters({{QStringLiteral("tcp_user_timeout"), QStringLiteral("8000")},
                                   {QStringLiteral("keepalives_idle"), QStringLiteral("99")}});
    const auto patient = connected(told);
    EXPECT_EQ(tcpOption(TCP_USER_TIMEOUT, cluster().port()), 8000);
    EXPECT_EQ(tcpOption(TCP_KEEPIDLE, cluster().port()), 99);
    EXPECT_EQ(tcpOption(TCP_KEEPCNT, cluster().port()), 3);
}

// As hosts of PostgreSQL hand them out.
TEST_F(ServerAccessConnect, tellsLibpqWhatAnAddressSays)
{
    const auto recordOf = [](const QString &parameters) {
        const QString text =
            QStringLiteral("postgres://%1@127.0.0.1:%2/postgres?%3")
                .arg(PostgresCluster::superuser(), QString::number(cluster().port()), parameters);
        DXError error;
        const Record details = PostgresConnectionStringReader::read(text, &error);
        EXPECT_TRUE(details) << error.description().toStdString();
        return details ? details : record(cluster());
    };
    const auto client =
        connected(recordOf(QStringLiteral("connect_timeout=10&target_session_attrs=read-write&"
                                          "application_name=it%27s&gssencmode=disable")));
    EXPECT_EQ(scalar(*client, QStringLiteral("SHOW application_name")), u"it's");

    for (const auto &[parameters, says] : std::initializer_list<std::pair<QString, QString>>{
             {QStringLiteral("target_session_attrs=standby"),
              QStringLiteral("server is not in hot standby mode")},
             {QStringLiteral("channel_binding=require"), QStringLiteral("channel binding")},
             {QStringLiteral("hostaddr=127.7.7.7"), QStringLiteral("127.7.7.7")}}) {
        const Attempt attempt = connect(recordOf(parameters));
        EXPECT_FALSE(attempt.isConnected) << parameters.toStdString();
        expectContains(attempt.error.description(), says);
    }
}

struct PasswordCase
{
    QString onServer;
    QString inRecord;
    bool connects;
};

// A backslash is sent as a backslash and an apostrophe, as the form of connection strings that
// existing connections were saved for has it.
TEST_F(ServerAccessConnect, sendsThePasswordAndNeverLogsIt)
{
    const QList<PasswordCase> cases{
        {QStringLiteral("Sesame-1"), QStringLiteral("Sesame-1"), true},
        {QStringLiteral("Sesame-1"), QStringLiteral("Sesame-2"), false},
        {QStringLiteral("it's Öpen ''"), QStringLiteral("it's Öpen ''"), true},
        {QStringLiteral("it's Öpen ''"), QStringLiteral("it's Öpen '"), false},
        {QStringLiteral("' host=/nowhere x='"), QStringLiteral("' host=/nowhere x='"), true},
        {QStringLiteral("back\\'slash"), QStringLiteral("back\\slash"), true},
        {QStringLiteral("ends\\'"), QStringLiteral("ends\\"), true},
        {QStringLiteral("other"), QStringLiteral("mixed\\'up' \\"), false},
    };
    for (const PasswordCase &each : cases) {
        SCOPED_TRACE(each.inRecord.toStdString());
        const LoggedTexts logged;
        const Record details = recordOnLoopback(cluster());
        details->setUsername(createRole(QStringLiteral("keeper"), each.onServer));
        details->setPassword(each.inRecord);
        const Attempt attempt = connect(details);

        EXPECT_EQ(attempt.isConnected, each.connects) << attempt.error.description().toStdString();
        if (!each.connects) {
            expectContains(attempt.error.description(),
                           QStringLiteral("password authentication failed for user \"keeper\""));
            EXPECT_EQ(attempt.error.domain(), QString());
            EXPECT_EQ(attempt.error.code(), 0);
            EXPECT_FALSE(attempt.client->isConnected());
        }
        EXPECT_FALSE(logged.texts().filter(QStringLiteral("<password>")).isEmpty());
        QStringList secrets{each.inRecord, each.onServer,
                            QString(each.inRecord).replace(u'\'', QStringLiteral("\\'"))};
        for (const QString &secret : secrets)
            EXPECT_EQ(logged.texts().filter(secret), QStringList());
        EXPECT_FALSE(attempt.error.description().contains(each.inRecord));
    }
}

TEST_F(ServerAccessConnect, fallsBackToTheDatabasePostgresOnlyWhenNoneIsNamed)
{
    const QString user = createRole(QStringLiteral("lonely"), QStringLiteral("secret"));
    for (const QString &host : {cluster().socketFolder(), QStringLiteral("127.0.0.1")}) {
        const Record details = record(cluster(), {});
        details->setHost(host);
        details->setUsername(user);
        details->setPassword(QStringLiteral("secret"));
        const auto client = connected(details);
        EXPECT_EQ(scalar(*client, QStringLiteral("SELECT current_database()")), u"postgres");

        details->setDatabase(QStringLiteral("absent"));
        const Attempt refused = connect(details);
        EXPECT_FALSE(refused.isConnected);
        expectContains(refused.error.description(),
                       QStringLiteral("database \"absent\" does not exist"));

        details->setDatabase(QString());
        details->setPassword(QStringLiteral("wrong"));
        details->setHost(QStringLiteral("127.0.0.1"));
        EXPECT_FALSE(connect(details).isConnected);
    }
    cluster().createDatabase(user);
    const Record details = record(cluster(), {});
    details->setUsername(user);
    EXPECT_EQ(scalar(*connected(details), QStringLiteral("SELECT current_database()")), user);
}

TEST_F(ServerAccessConnect, saysThatAPortIsClosed)
{
    QTcpServer portOfNobody;
    ASSERT_TRUE(portOfNobody.listen(QHostAddress::LocalHost));
    const Record details = recordOnLoopback(cluster());
    details->setPort(portOfNobody.serverPort());
    portOfNobody.close();
    const LoggedTexts logged;
    const Attempt attempt = connect(details);
    EXPECT_FALSE(attempt.isConnected);
    expectContains(attempt.error.description(), QStringLiteral("Connection refused"));
    EXPECT_EQ(logged.texts().filter(QStringLiteral("Connection to database failed: ")).size(), 1);
}

// Without a host entry libpq would go to the server of its default, here ours.
TEST_F(ServerAccessConnect, neverTakesTheLocalServerForAnUnknownHost)
{
    const EnvironmentVariable defaultHost("PGHOST", cluster().socketFolder());
    const Record details = record(cluster());
    details->setHost(QStringLiteral("no-such-host.invalid"));
    const Attempt attempt = connect(details);
    EXPECT_FALSE(attempt.isConnected);
    expectContains(attempt.error.description(), QStringLiteral("no-such-host.invalid"));

    details->setHost(QString());
    connected(details);
}

TEST_F(ServerAccessConnect, appliesSessionPreferences)
{
    const Record details = record(cluster());
    details->setConnectionSessionPreferences({
        {QStringLiteral("TimeZone"), QStringLiteral("Asia/Tokyo")},
        {QStringLiteral("search_path"), QStringLiteral("pg_catalog")},
        {QStringLiteral("statement_timeout"), QStringLiteral("77000")},
        {QStringLiteral("work_mem"), QStringLiteral("Default")},
        {QStringLiteral("lock_timeout"), QString()},
    });
    const auto client = connected(details);
    const auto expectSettings = [&client] {
        EXPECT_EQ(scalar(*client, QStringLiteral("SHOW timezone")), u"Asia/Tokyo");
        EXPECT_EQ(scalar(*client, QStringLiteral("SHOW search_path")), u"pg_catalog");
        EXPECT_EQ(scalar(*client, QStringLiteral("SHOW statement_timeout")), u"77s");
        EXPECT_EQ(scalar(*client, QStringLiteral("SHOW work_mem")), u"4MB");
    };
    expectSettings();

    EXPECT_FALSE(errorOf(*client, QStringLiteral("SET timezone TO 'UTC'; BEGIN")));
    DXError error;
    EXPECT_TRUE(client->isInTransaction());
    inBackground([&] { return client->resetSession(&error); });
    EXPECT_FALSE(error) << error.description().toStdString();
    EXPECT_FALSE(client->isInTransaction());
    expectSettings();
}

TEST_F(ServerAccessConnect, staysConnectedWhenASessionPreferenceIsRefused)
{
    // The search path is sent without TO, which servers refuse.
    const QList<std::pair<QString, QString>> cases{
        {QStringLiteral("no_such_setting"), QStringLiteral("no_such_setting")},
        {QStringLiteral("timezone"), QStringLiteral("TimeZone")},
        {QStringLiteral("searchpath"), QStringLiteral("syntax error")},
    };
    for (const auto &[preference, reason] : cases) {
        const Record details = record(cluster());
        details->setConnectionSessionPreferences({{preference, QStringLiteral("zone")}});
        const Attempt attempt = connect(details);
        EXPECT_FALSE(attempt.isConnected);
        expectContains(attempt.error.description(), reason);
        EXPECT_TRUE(attempt.client->isConnected());
        EXPECT_EQ(scalar(*attempt.client, QStringLiteral("SELECT 1")), u"1");
    }
}

TEST_F(ServerAccessConnect, handsOnNotices)
{
    QStringList notices;
    PostgresDatabaseClient client(record(cluster()));
    client.setNoticeHandler([&notices](const QString &notice) { notices.append(notice); });
    DXError error;
    inBackground([&] { return client.connect(&error); });
    ASSERT_FALSE(error) << error.description().toStdString();
    EXPECT_FALSE(errorOf(client, QStringLiteral("DO $$ BEGIN RAISE NOTICE 'Grüße';"
                                                " RAISE WARNING 'late'; END $$")));
    EXPECT_EQ(notices, QStringList({QStringLiteral("NOTICE:  Grüße\n"),
                                    QStringLiteral("WARNING:  late\n")}));
}

} // namespace
