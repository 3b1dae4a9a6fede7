// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <optional>

class FileLock;

/// A private PostgreSQL server for tests, in a temporary folder of its own. It ends with this
/// object, and also when the test program is killed.
///
/// Its superuser is "dba". It always listens on a Unix socket in socketFolder(); unless Options say
/// otherwise everybody is trusted. As root the server runs as the user postgres, else as ourselves.
/// Whatever fails, a missing server among it, fails the running test with a message that tells why.
/// One thread at a time.
class PostgresCluster final
{
public:
    /// PEM files; they are copied, and the copies given to the server's user.
    struct Tls
    {
        QString certificate = {};
        QString key = {};
        /// Who signs client certificates; empty when none are asked for.
        QString authority = {};
        /// Revoked client certificates.
        QString revocationList = {};
    };
    struct Options
    {
        /// Encoding of the databases that the server begins with. Other than UTF8, the locale is C.
        QString encoding = QStringLiteral("UTF8");
        /// Lines of pg_hba.conf, used after "local all dba trust"; empty trusts everybody.
        QStringList hba = {};
        /// Listen on 127.0.0.1 too.
        bool tcp = false;
        std::optional<Tls> tls = {};
        /// Further lines of postgresql.conf.
        QStringList configuration = {};
    };

    PostgresCluster();
    explicit PostgresCluster(const Options &options);
    ~PostgresCluster();

    /// The server of tests that only need databases of their own; started on first use, it runs
    /// until the program ends. On the main thread first.
    static PostgresCluster &shared();
    static QString superuser() { return QStringLiteral("dba"); }

    /// Usable as a connection's host.
    QString socketFolder() const { return m_folder.path(); }
    quint16 port() const { return m_port; }
    /// Everything that the server wrote to its log.
    QString serverLog() const;

    /// Ends the server as a maintainer would: sessions are told, then closed.
    void stop();
    /// Starts it again where it was, with the same port; waits until it answers.
    void start();
    /// Ends it as a crash would: server and sessions are killed without a word to anybody.
    void killHard();

    /// Runs SQL, which may hold several statements, with the program psql as the superuser;
    /// stops at the first error. Returns the rows as lines of columns joined by "|".
    QString psql(const QString &sql, const QString &database = QStringLiteral("postgres")) const;
    /// Makes an empty database; encoding "" is the server's own.
    void createDatabase(const QString &name, const QString &encoding = {}) const;

private:
    Q_DISABLE_COPY_MOVE(PostgresCluster)

    QString dataFolder() const { return m_folder.filePath(QStringLiteral("data")); }
    QString logFile() const { return m_folder.filePath(QStringLiteral("log")); }
    bool makeFolder();
    bool makeDataFolder();
    bool initialise(const QString &dataFolder) const;
    bool configure();
    void writeFile(const QString &name, const QByteArray &content) const;
    QString copyForServer(const QString &file, const QString &name) const;
    bool startOnFreePort();
    QString tryStart() const;
    void stopWithMode(const QString &mode) const;

    const Options m_options;
    // Given back after m_folder is gone: whoever gets the lock tidies up there.
    std::unique_ptr<FileLock> m_owner;
    QTemporaryDir m_folder;
    quint16 m_port = 5432;
    bool m_running = false;
};
