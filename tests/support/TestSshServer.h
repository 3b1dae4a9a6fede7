// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayList>
#include <QList>
#include <QString>
#include <QTemporaryDir>

#include <atomic>
#include <thread>

#include <sys/types.h>

/// A private OpenSSH server on a port of 127.0.0.1 that forwards TCP connections and lets in the
/// user who runs the tests, by key only. Keys and configuration live in a temporary folder; nothing
/// of the user's own is read. It ends with this object and with the test program.
///
/// Whatever fails while it starts fails the running test with a message that tells why. One
/// thread at a time.
class TestSshServer final
{
public:
    TestSshServer();
    ~TestSshServer();

    quint16 port() const { return m_port; }
    /// The one user who may log in.
    QString username() const;
    /// A private key that the server accepts.
    QString keyFile() const { return file(QStringLiteral("user")); }
    /// Another one, which only passphrase() opens.
    QString lockedKeyFile() const { return file(QStringLiteral("locked")); }
    QString passphrase() const { return QStringLiteral("open sesame"); }
    /// A private key that the server does not know.
    QString strangerKeyFile() const { return file(QStringLiteral("stranger")); }
    /// An ssh_config that knows the server's key and keeps the user's agent and keys out.
    QString configurationFile() const { return file(QStringLiteral("ssh_config")); }
    /// The same with nothing in its known hosts.
    QString forgetfulConfigurationFile() const { return file(QStringLiteral("ssh_config_empty")); }

    /// Where a file of this name is in the server's folder.
    QString file(const QString &name) const { return m_folder.filePath(name); }
    /// Writes such a file and returns where it is; executable when isProgram.
    QString writeFile(const QString &name, const QByteArray &content, bool isProgram = false) const;
    /// Writes a folder with a program "ssh" that takes this text for the user's configuration, and
    /// returns its name for PATH: the real one finds ~/.ssh/config by the account, not by HOME.
    QString programFolder(const QByteArray &configuration) const;
    /// The processes called ssh that the process parent started and has not reaped yet.
    static QList<qint64> clientsOf(qint64 parent);
    /// What the server logged.
    QString log() const;

private:
    Q_DISABLE_COPY_MOVE(TestSshServer)

    void makeKey(const QString &name, const QString &passphrase) const;
    QByteArray publicKey(const QString &name) const;
    void writeClientConfiguration(const QString &name, const QString &knownHosts) const;
    bool startOnFreePort();
    void keep(const QByteArrayList &command);
    void stop();

    QTemporaryDir m_folder;
    quint16 m_port = 0;
    // Lives as long as the server: the kernel ends a process that asked for it when the thread that
    // started it ends. Nothing of QProcess here, which leaves ThreadSanitizer blind on its thread.
    std::jthread m_keeper;
    std::atomic<pid_t> m_process = 0;
    std::atomic<bool> m_hasEnded = false;
};
