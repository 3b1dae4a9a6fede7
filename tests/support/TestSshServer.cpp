// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/TestSshServer.h"

#include "support/DXWait.h"
#include "support/Program.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTcpServer>

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <vector>

#include <pwd.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

quint16 freePort()
{
    QTcpServer server;
    return server.listen(QHostAddress::LocalHost) ? server.serverPort() : quint16(0);
}

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Debian keeps it in a folder that only root's path names.
QString serverProgram()
{
    const QString name = QStringLiteral("sshd");
    const QString onPath = QStandardPaths::findExecutable(name);
    return onPath.isEmpty() ? QStandardPaths::findExecutable(
               name, {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/local/sbin")})
                            : onPath;
}

} // namespace

TestSshServer::TestSshServer()
{
    makeKey(QStringLiteral("host"), {});
    makeKey(QStringLiteral("user"), {});
    makeKey(QStringLiteral("stranger"), {});
    makeKey(QStringLiteral("locked"), passphrase());
    writeFile(QStringLiteral("authorized_keys"),
              publicKey(QStringLiteral("user")) + publicKey(QStringLiteral("locked")));
    // As root the server drops its rights in this folder, which the system's own service makes.
    if (geteuid() == 0)
        QDir().mkpath(QStringLiteral("/run/sshd"));
    while (!startOnFreePort()) {
        if (!log().contains(QStringLiteral("Address already in use"))) {
            ADD_FAILURE() << "sshd did not start (is openssh-server installed?): "
                          << qPrintable(log());
            return;
        }
    }
    writeFile(QStringLiteral("known_hosts"), "[127.0.0.1]:" + QByteArray::number(m_port) + ' '
                                                 + publicKey(QStringLiteral("host")));
    writeFile(QStringLiteral("known_hosts_empty"), {});
    writeClientConfiguration(QStringLiteral("ssh_config"), QStringLiteral("known_hosts"));
    writeClientConfiguration(QStringLiteral("ssh_config_empty"),
                             QStringLiteral("known_hosts_empty"));
}

TestSshServer::~TestSshServer()
{
    stop();
}

QString TestSshServer::username() const
{
    const passwd *const entry = getpwuid(geteuid());
    return entry ? QString::fromLocal8Bit(entry->pw_name) : QString();
}

QString TestSshServer::writeFile(const QString &name, const QByteArray &content,
                                 bool isProgram) const
{
    QFile written(file(name));
    const bool ok = written.open(QIODevice::WriteOnly | QIODevice::Truncate)
                    && written.write(content) == content.size();
    EXPECT_TRUE(ok) << qPrintable(written.fileName()) << ": " << qPrintable(written.errorString());
    QFile::Permissions permissions = QFile::ReadOwner | QFile::WriteOwner;
    written.setPermissions(isProgram ? permissions | QFile::ExeOwner : permissions);
    return written.fileName();
}

QString TestSshServer::programFolder(const QByteArray &configuration) const
{
    const QString folder = QStringLiteral("bin");
    EXPECT_TRUE(QDir(m_folder.path()).mkpath(folder));
    const QString file = writeFile(QStringLiteral("user_config"), configuration);
    writeFile(folder + QStringLiteral("/ssh"),
              QStringLiteral("#!/bin/sh\nexec \"%1\" -F \"%2\" \"$@\"\n")
                  .arg(QStandardPaths::findExecutable(QStringLiteral("ssh")), file)
                  .toUtf8(),
              true);
    return m_folder.filePath(folder);
}

QList<qint64> TestSshServer::clientsOf(qint64 parent)
{
    QList<qint64> clients;
    const QStringList numbers = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString &number : numbers) {
        // "123 (ssh) S 122 …" (proc(5))
        const QByteArrayList status =
            contentOf(QStringLiteral("/proc/%1/stat").arg(number)).split(' ');
        if (status.value(1) == "(ssh)" && status.value(3).toLongLong() == parent)
            clients += status.value(0).toLongLong();
    }
    return clients;
}

QString TestSshServer::log() const
{
    return QString::fromUtf8(contentOf(file(QStringLiteral("log"))));
}

void TestSshServer::makeKey(const QString &name, const QString &passphrase) const
{
    const Program keygen(
        {.program = QStringLiteral("ssh-keygen"),
         .arguments = {QStringLiteral("-q"), QStringLiteral("-t"), QStringLiteral("ed25519"),
                       QStringLiteral("-N"), passphrase, QStringLiteral("-f"), file(name)}});
    EXPECT_TRUE(keygen.succeeded()) << qPrintable(keygen.failure());
}

QByteArray TestSshServer::publicKey(const QString &name) const
{
    return contentOf(file(name + QStringLiteral(".pub")));
}

void TestSshServer::writeClientConfiguration(const QString &name, const QString &knownHosts) const
{
    writeFile(name, QStringLiteral("Host *\n"
                                   "    UserKnownHostsFile \"%1\"\n"
                                   "    GlobalKnownHostsFile /dev/null\n"
                                   "    IdentityAgent none\n"
                                   "    IdentitiesOnly yes\n"
                                   "    IdentityFile none\n")
                        .arg(file(knownHosts))
                        .toUtf8());
}

bool TestSshServer::startOnFreePort()
{
    m_port = freePort();
    const QString configuration = writeFile(QStringLiteral("sshd_config"),
                                            QStringLiteral("ListenAddress 127.0.0.1:%1\n"
                                                           "HostKey %2/host\n"
                                                           "AuthorizedKeysFile %2/authorized_keys\n"
                                                           "PidFile none\n"
                                                           "StrictModes no\n"
                                                           "UsePAM no\n"
                                                           "PasswordAuthentication no\n"
                                                           "KbdInteractiveAuthentication no\n"
                                                           "PermitRootLogin prohibit-password\n"
                                                           "AllowTcpForwarding yes\n"
                                                           "MaxStartups 100\n")
                                                .arg(m_port)
                                                .arg(m_folder.path())
                                                .toUtf8());
    QFile::remove(file(QStringLiteral("log")));
    stop();
    m_hasEnded = false;
    m_keeper = std::jthread(
        [this, command = QByteArrayList{
                   serverProgram().toLocal8Bit(), "-D", "-f", configuration.toLocal8Bit(), "-E",
                   file(QStringLiteral("log")).toLocal8Bit()}] { keep(command); });
    return DXWait::until(
               [this] { return m_hasEnded || log().contains(QStringLiteral("Server listening")); })
           && !m_hasEnded;
}

void TestSshServer::keep(const QByteArrayList &command)
{
    std::vector<char *> arguments;
    for (const QByteArray &argument : command)
        arguments.push_back(const_cast<char *>(argument.constData()));
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        execv(arguments.front(), arguments.data());
        _exit(127);
    }
    m_process = child;
    m_process.notify_all();
    siginfo_t ending;
    while (child > 0 && waitid(P_PID, static_cast<id_t>(child), &ending, WEXITED | WNOWAIT) < 0
           && errno == EINTR) { }
    m_hasEnded = true;
}

void TestSshServer::stop()
{
    if (!m_keeper.joinable())
        return;
    m_process.wait(0);
    // Still the server's number: the keeper leaves it to be waited for.
    const pid_t child = m_process;
    if (child > 0)
        kill(child, SIGTERM);
    m_keeper.join();
    if (child > 0)
        waitpid(child, nullptr, 0);
    m_process = 0;
}
