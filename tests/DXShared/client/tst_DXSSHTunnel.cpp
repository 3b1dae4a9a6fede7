// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/ssh/DXSSHTunnel.h"

#include "DXShared/client/ScriptedClient.h"
#include "support/DXWait.h"
#include "support/TestSshServer.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>

#include <gmock/gmock.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <functional>
#include <future>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace
{

constexpr int limitMilliseconds = 30'000;

class EnvironmentGuard final
{
public:
    EnvironmentGuard(const char *name, const QByteArray &value)
        : m_name(name)
        , m_before(qgetenv(name))
    {
        qputenv(name, value);
    }
    ~EnvironmentGuard() { qputenv(m_name, m_before); }

private:
    Q_DISABLE_COPY_MOVE(EnvironmentGuard)
    const char *m_name;
    QByteArray m_before;
};

// The fields of proc(5)'s stat behind the program's name, which they are returned with.
QByteArrayList statusOf(qint64 pid)
{
    QFile file(u"/proc/%1/stat"_s.arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray text = file.readAll();
    const qsizetype open = text.indexOf('(');
    const qsizetype close = text.lastIndexOf(')');
    return QByteArrayList{text.mid(open + 1, close - open - 1)} + text.mid(close + 2).split(' ');
}

QList<qint64> sshChildren()
{
    return TestSshServer::clientsOf(getpid());
}

bool hasEnded(qint64 pid)
{
    const QByteArrayList status = statusOf(pid);
    return status.isEmpty() || status.value(1) == "Z" || status.value(1) == "X";
}

bool isRefused(quint16 port)
{
    QTcpSocket socket;
    socket.connectToHost(u"127.0.0.1"_s, port);
    return !socket.waitForConnected(limitMilliseconds)
           && socket.error() == QAbstractSocket::ConnectionRefusedError;
}

// Whether bytes reach target through port and come back.
bool carriesBytes(quint16 port, QTcpServer &target)
{
    const QByteArray bytes(100'000, 'x');
    QTcpSocket client;
    client.connectToHost(u"127.0.0.1"_s, port);
    if (!client.waitForConnected(limitMilliseconds)
        || !target.waitForNewConnection(limitMilliseconds))
        return false;
    const std::unique_ptr<QTcpSocket> served(target.nextPendingConnection());
    const auto transfer = [&bytes](QTcpSocket &from, QTcpSocket &to) {
        from.write(bytes);
        while (from.bytesToWrite() > 0 && from.waitForBytesWritten(limitMilliseconds)) { }
        while (to.bytesAvailable() < bytes.size() && to.waitForReadyRead(limitMilliseconds)) { }
        return to.readAll() == bytes;
    };
    return transfer(client, *served) && transfer(*served, client);
}

class Asker final : public DXSSHDelegate
{
public:
    QString askpass;
    std::function<bool()> shouldCancel = [] { return false; };
    QStringList lines;

    QString sshAskpassProgram() const override { return askpass; }
    bool sshShouldCancel() const override { return shouldCancel(); }
    void sshPrinted(const QString &line) override { lines += line; }
};

struct Opened
{
    std::unique_ptr<DXSSHTunnel> tunnel;
    DXError error;
};

class DXSSHTunnelTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { s_server = std::make_unique<TestSshServer>(); }
    static void TearDownTestSuite() { s_server.reset(); }

    void SetUp() override { ASSERT_TRUE(m_target.listen(QHostAddress::LocalHost)); }
    void TearDown() override { EXPECT_THAT(sshChildren(), testing::IsEmpty()); }

    static TestSshServer &server() { return *s_server; }
    static DXSSHTunnelModel model()
    {
        return {.host = u"127.0.0.1"_s,
                .port = server().port(),
                .username = server().username(),
                .identityFile = server().keyFile(),
                .configurationFile = server().configurationFile()};
    }

    // On a thread that ends once the tunnel is open, as those of the background queue may.
    static Opened open(const DXSSHTunnelModel &model, const QString &host, quint16 port,
                       DXSSHDelegate *delegate = nullptr)
    {
        Opened opened;
        std::thread([&] {
            opened.tunnel = DXSSHTunnel::open(model, host, port, delegate, &opened.error);
        }).join();
        EXPECT_NE(opened.tunnel == nullptr, opened.error.isEmpty());
        return opened;
    }
    Opened open(const DXSSHTunnelModel &model, DXSSHDelegate *delegate = nullptr)
    {
        return open(model, u"127.0.0.1"_s, m_target.serverPort(), delegate);
    }

    // Makes a shell script the program ssh while the result lives.
    static EnvironmentGuard replaceSsh(const QByteArray &script)
    {
        QDir().mkpath(server().file(u"bin"_s));
        server().writeFile(u"bin/ssh"_s, "#!/bin/sh\n" + script, true);
        return {"PATH", server().file(u"bin"_s).toLocal8Bit() + ':' + qgetenv("PATH")};
    }

    QTcpServer m_target;

private:
    static inline std::unique_ptr<TestSshServer> s_server;
};

TEST_F(DXSSHTunnelTest, carriesBytesUntilItIsDisconnected)
{
    const auto openDescriptors = [] {
        return QDir(u"/proc/self/fd"_s)
            .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
            .size();
    };
    const qsizetype before = openDescriptors();
    {
        const Opened opened = open(model());
        ASSERT_TRUE(opened.tunnel) << qPrintable(opened.error.description());
        EXPECT_TRUE(opened.tunnel->isOpen());
        EXPECT_TRUE(carriesBytes(opened.tunnel->localPort(), m_target));
        EXPECT_TRUE(carriesBytes(opened.tunnel->localPort(), m_target));

        opened.tunnel->disconnect();
        EXPECT_FALSE(opened.tunnel->isOpen());
        EXPECT_THAT(sshChildren(), testing::IsEmpty());
        EXPECT_TRUE(isRefused(opened.tunnel->localPort()));
        opened.tunnel->disconnect();
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(DXSSHTunnelTest, keepsTunnelsApart)
{
    QTcpServer other;
    ASSERT_TRUE(other.listen(QHostAddress::LocalHost));
    const Opened first = open(model());
    Opened second = open(model(), u"localhost"_s, other.serverPort());
    ASSERT_TRUE(first.tunnel && second.tunnel);
    EXPECT_TRUE(carriesBytes(second.tunnel->localPort(), other));
    second.tunnel.reset();
    EXPECT_TRUE(carriesBytes(first.tunnel->localPort(), m_target));
    EXPECT_EQ(sshChildren().size(), 1);
}

TEST_F(DXSSHTunnelTest, reachesTargetsByBareAndBracketedAddresses)
{
    QTcpServer target;
    ASSERT_TRUE(target.listen(QHostAddress::LocalHostIPv6)
                || target.listen(QHostAddress::LocalHost));
    const QString address = target.serverAddress().toString();
    for (const QString &host : {address, QString(u'[' + address + u']')}) {
        const Opened opened = open(model(), host, target.serverPort());
        ASSERT_TRUE(opened.tunnel) << qPrintable(opened.error.description());
        EXPECT_TRUE(carriesBytes(opened.tunnel->localPort(), target));
    }
}

TEST_F(DXSSHTunnelTest, saysWhatSshSaidWhenItFails)
{
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
    const quint16 closedPort = closed.serverPort();
    closed.close();
    const QString takenForward = server().writeFile(
        u"taken"_s, "LocalForward 127.0.0.1:" + QByteArray::number(m_target.serverPort())
                        + " 127.0.0.1:1\nInclude " + server().configurationFile().toLocal8Bit());

    struct Case
    {
        std::function<void(DXSSHTunnelModel &)> change;
        QString expected;
    };
    for (const auto &[change, expected] : std::initializer_list<Case>{
             {[](auto &m) { m.identityFile = server().strangerKeyFile(); },
              u"Permission denied (publickey)."_s},
             {[](auto &m) { m.identityFile = server().lockedKeyFile(); },
              u"Permission denied (publickey)."_s},
             {[](auto &m) { m.configurationFile = server().forgetfulConfigurationFile(); },
              u"Host key verification failed."_s},
             {[](auto &m) { m.host = u"no-such-host.invalid"_s; }, u"Could not resolve hostname"_s},
             {[=](auto &m) { m.port = closedPort; }, u"Connection refused"_s},
             {[](auto &m) { m.configurationFile = u"/nonexistent"_s; }, u"/nonexistent"_s},
             {[=](auto &m) { m.configurationFile = takenForward; },
              u"cannot listen to port: %1"_s.arg(m_target.serverPort())},
         }) {
        DXSSHTunnelModel changed = model();
        change(changed);
        Asker asker;
        const Opened opened = open(changed, &asker);
        EXPECT_FALSE(opened.tunnel);
        EXPECT_EQ(opened.error.code(), 255);
        EXPECT_TRUE(opened.error.description().contains(expected))
            << qPrintable(opened.error.description());
        EXPECT_TRUE(asker.lines.join(u'\n').contains(expected));
    }
}

TEST_F(DXSSHTunnelTest, refusesWhatSshWouldMisread)
{
    const QString witness = server().file(u"witness"_s);
    struct Case
    {
        std::function<void(DXSSHTunnelModel &)> change;
        QString target;
        quint16 port;
        QString expected;
    };
    const QString here = u"127.0.0.1"_s;
    const auto same = [](DXSSHTunnelModel &) {};
    for (const auto &[change, target, port, expected] : std::initializer_list<Case>{
             {[=](auto &m) { m.host = u"-oProxyCommand=touch${IFS}"_s + witness; }, here, 1,
              u"SSH server"_s},
             {[=](auto &m) { m.host = u"$(touch "_s + witness + u')'; }, here, 1, u"SSH server"_s},
             {[](auto &m) { m.host = u"a\nProxyCommand b"_s; }, here, 1, u"SSH server"_s},
             {[](auto &m) { m.host = QString(); }, here, 1, u"SSH server"_s},
             {[=](auto &m) { m.username = u"-oProxyCommand=touch "_s + witness; }, here, 1,
              u"user"_s},
             {[=](auto &m) { m.username = u"`touch "_s + witness + u'`'; }, here, 1, u"user"_s},
             {[](auto &m) { m.username = u"a\nb"_s; }, here, 1, u"user"_s},
             {[](auto &m) { m.identityFile = u"/no/such/key"_s; }, here, 1, u"/no/such/key"_s},
             {same, u"/var/run/postgresql"_s, 1, u"socket folder"_s},
             {same, u"::1]:22 -oProxyCommand=x"_s, 1, u"behind the SSH tunnel"_s},
             {same, QString(), 1, u"behind the SSH tunnel"_s},
             {same, here, 0, u"port"_s},
         }) {
        DXSSHTunnelModel changed = model();
        change(changed);
        Asker asker;
        const Opened opened = open(changed, target, port, &asker);
        EXPECT_FALSE(opened.tunnel);
        EXPECT_TRUE(opened.error.description().contains(expected))
            << qPrintable(opened.error.description());
        EXPECT_NE(opened.error.code(), 255) << "ssh was started";
    }
    EXPECT_FALSE(QFile::exists(witness));
}

TEST_F(DXSSHTunnelTest, takesAHostileFileNameAsAFileName)
{
    const QString name = u"key \"%h\\ -oProxyCommand=x"_s;
    ASSERT_TRUE(QFile::copy(server().keyFile(), server().file(name)));
    DXSSHTunnelModel odd = model();
    odd.identityFile = server().file(name);
    const Opened opened = open(odd);
    ASSERT_TRUE(opened.tunnel) << qPrintable(opened.error.description());
    EXPECT_TRUE(carriesBytes(opened.tunnel->localPort(), m_target));
}

TEST_F(DXSSHTunnelTest, tellsOfARefusedTarget)
{
    const quint16 port = m_target.serverPort();
    m_target.close();
    const Opened opened = open(model(), u"127.0.0.1"_s, port);
    ASSERT_TRUE(opened.tunnel);
    EXPECT_EQ(opened.tunnel->standardError(), QString());

    QTcpSocket client;
    client.connectToHost(u"127.0.0.1"_s, opened.tunnel->localPort());
    ASSERT_TRUE(client.waitForConnected(limitMilliseconds));
    EXPECT_TRUE(client.state() == QAbstractSocket::UnconnectedState
                || client.waitForDisconnected(limitMilliseconds));
    EXPECT_THAT(opened.tunnel->standardError().toStdString(),
                HasSubstr("open failed: connect failed: Connection refused"));
    EXPECT_TRUE(opened.tunnel->isOpen());
}

TEST_F(DXSSHTunnelTest, noticesThatItsChildDied)
{
    const Opened opened = open(model());
    ASSERT_TRUE(opened.tunnel);
    const QList<qint64> children = sshChildren();
    ASSERT_EQ(children.size(), 1);
    kill(static_cast<pid_t>(children.first()), SIGKILL);
    EXPECT_TRUE(DXWait::until([&] { return !opened.tunnel->isOpen(); }));
    EXPECT_THAT(sshChildren(), testing::IsEmpty());
    opened.tunnel->disconnect();
}

TEST_F(DXSSHTunnelTest, takesItsChildAlongWhenTheProgramIsKilled)
{
    const QStringList command{QStringLiteral("exec"),
                              QStringLiteral(DX_TUNNEL_HOLDER),
                              QString::number(server().port()),
                              server().username(),
                              server().keyFile(),
                              server().configurationFile(),
                              QString::number(m_target.serverPort())};
    FILE *const output = popen(command.join(u' ').toLocal8Bit().constData(), "re");
    ASSERT_NE(output, nullptr);
    int holder = 0;
    int port = 0;
    ASSERT_EQ(std::fscanf(output, "%d %d", &holder, &port), 2);
    const auto localPort = static_cast<quint16>(port);
    EXPECT_TRUE(carriesBytes(localPort, m_target));
    const QList<qint64> children = TestSshServer::clientsOf(holder);
    EXPECT_EQ(children.size(), 1);

    kill(holder, SIGKILL);
    const int status = pclose(output);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << status;
    EXPECT_TRUE(DXWait::until([&] { return hasEnded(children.value(0)); }));
    EXPECT_TRUE(isRefused(localPort));
}

TEST_F(DXSSHTunnelTest, asksThroughTheDelegatesProgram)
{
    Asker asker;
    asker.askpass = server().writeFile(
        u"askpass"_s, "#!/bin/sh\necho '" + server().passphrase().toUtf8() + "'\n", true);
    DXSSHTunnelModel locked = model();
    locked.identityFile = server().lockedKeyFile();
    const Opened opened = open(locked, &asker);
    ASSERT_TRUE(opened.tunnel) << qPrintable(opened.error.description());
    EXPECT_TRUE(carriesBytes(opened.tunnel->localPort(), m_target));
}

TEST_F(DXSSHTunnelTest, givesUpWhenTheDelegateSaysSo)
{
    // A server that takes the connection and says nothing.
    DXSSHTunnelModel silent = model();
    silent.port = m_target.serverPort();
    Asker asker;
    std::atomic<bool> hasStarted = false;
    asker.shouldCancel = [&] { return hasStarted.load(); };
    auto opening = std::async(std::launch::async, [&] {
        Opened opened;
        opened.tunnel = DXSSHTunnel::open(silent, u"127.0.0.1"_s, 1, &asker, &opened.error);
        return opened;
    });
    ASSERT_TRUE(m_target.waitForNewConnection(limitMilliseconds));
    hasStarted = true;
    const Opened opened = opening.get();
    EXPECT_FALSE(opened.tunnel);
    EXPECT_EQ(opened.error.code(), ECANCELED);
}

TEST_F(DXSSHTunnelTest, triesAnotherPortWhenItsOwnIsTaken)
{
    const QString tried = server().file(u"tried"_s);
    const QString real = QStandardPaths::findExecutable(u"ssh"_s);
    const EnvironmentGuard guard =
        replaceSsh(u"for argument; do case $argument in 127.0.0.1:*)\n"
                   "    port=${argument#*:}; port=${port%%:*};;\n"
                   "esac; done\n"
                   "echo $port >> '%1'\n"
                   "[ $(wc -l < '%1') -gt 1 ] && exec %2 \"$@\"\n"
                   "echo \"channel_setup_fwd_listener_tcpip: cannot listen to port: $port\" >&2\n"
                   "exit 255\n"_s.arg(tried, real)
                       .toUtf8());
    const Opened opened = open(model());
    ASSERT_TRUE(opened.tunnel) << qPrintable(opened.error.description());
    QFile file(tried);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArrayList ports = file.readAll().trimmed().split('\n');
    ASSERT_EQ(ports.size(), 2);
    EXPECT_EQ(ports.last().toUShort(), opened.tunnel->localPort());
    EXPECT_TRUE(carriesBytes(opened.tunnel->localPort(), m_target));
}

TEST_F(DXSSHTunnelTest, endsAStubbornChildAndKeepsTheEndOfItsChatter)
{
    const EnvironmentGuard guard = replaceSsh("trap '' TERM\n"
                                              "for argument; do case $argument in LocalCommand=*)\n"
                                              "    ${argument#LocalCommand=};;\n"
                                              "esac; done\n"
                                              "i=0; while [ $i -lt 3000 ]; do\n"
                                              "    i=$((i + 1)); echo line $i >&2\n"
                                              "done\n"
                                              "while :; do sleep 1; done\n");
    const Opened opened = open(model());
    ASSERT_TRUE(opened.tunnel) << qPrintable(opened.error.description());
    EXPECT_TRUE(
        DXWait::until([&] { return opened.tunnel->standardError().endsWith(u"line 3000\n"); }));
    EXPECT_LE(opened.tunnel->standardError().size(), 8192);
    opened.tunnel->disconnect();
    EXPECT_THAT(sshChildren(), testing::IsEmpty());
}

TEST_F(DXSSHTunnelTest, namesThePackageWhenSshIsMissing)
{
    const EnvironmentGuard guard("PATH", server().file(u"nothing"_s).toLocal8Bit());
    const Opened opened = open(model());
    EXPECT_FALSE(opened.tunnel);
    EXPECT_THAT(opened.error.description().toStdString(), HasSubstr("openssh-client"));
}

TEST_F(DXSSHTunnelTest, opensForAccountsWithoutAShell)
{
    const EnvironmentGuard guard("SHELL", "/usr/sbin/nologin");
    const Opened opened = open(model());
    ASSERT_TRUE(opened.tunnel) << qPrintable(opened.error.description());
}

TEST_F(DXSSHTunnelTest, isOpenedAsTheRecordOfAClientSays)
{
    ScriptedServer scripted;
    ScriptedClient client(scripted);
    const auto record = std::make_shared<FakeDBC>();
    client.setDatabaseConnectionDetails(record);
    const auto initialize = [&client] {
        Opened opened;
        std::thread([&] { opened.tunnel = client.initializeSSH(nullptr, &opened.error); }).join();
        return opened;
    };
    EXPECT_THAT(initialize().error.description().toStdString(), HasSubstr("no SSH tunnel"));
    record->setSshTunnelModel(std::make_shared<DXSSHTunnelModel>(model()));
    EXPECT_THAT(initialize().error.description().toStdString(), HasSubstr("port"));

    // Without a host of its own, the server is where the tunnel ends.
    record->setPort(m_target.serverPort());
    const Opened opened = initialize();
    ASSERT_TRUE(opened.tunnel) << qPrintable(opened.error.description());
    EXPECT_TRUE(carriesBytes(opened.tunnel->localPort(), m_target));
}

} // namespace
