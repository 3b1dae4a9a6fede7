// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/PostgresCluster.h"

#include "support/FileLock.h"
#include "support/ServerPrograms.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTcpServer>
#include <QThread>

#include <csignal>
#include <gtest/gtest.h>
#include <sys/shm.h>
#include <unistd.h>

namespace
{

void fail(const QString &message)
{
    ADD_FAILURE() << message.toStdString();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

// Below the range that the kernel takes outgoing connections' ports from, so that a server that
// is stopped and started again finds its port free.
quint16 freePort()
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        const auto port = static_cast<quint16>(QRandomGenerator::global()->bounded(15'000, 32'000));
        if (QTcpServer server; server.listen(QHostAddress::LocalHost, port))
            return port;
    }
    return 0;
}

// "R" running, "Z" dead but not yet waited for; nothing when there is no such process.
char processState(pid_t process)
{
    const QByteArray stat = contentOf(QStringLiteral("/proc/%1/stat").arg(process));
    const qsizetype nameEnd = stat.lastIndexOf(')');
    return nameEnd < 0 || nameEnd + 2 >= stat.size() ? '\0' : stat[nameEnd + 2];
}

QList<pid_t> childrenOf(pid_t process)
{
    QList<pid_t> result;
    const QByteArray children = contentOf(QStringLiteral("/proc/%1/task/%1/children").arg(process));
    for (const QByteArray &child : children.simplified().split(' ')) {
        if (const pid_t id = child.toInt(); id > 0)
            result.append(id);
    }
    return result;
}

} // namespace

PostgresCluster::PostgresCluster()
    : PostgresCluster(Options{})
{ }

// Not in the user's temporary folder: its path may be too long for a socket's, or closed to the
// server's user.
PostgresCluster::PostgresCluster(const Options &options)
    : m_options(options)
    , m_folder(QStringLiteral("/tmp/dxpg.XXXXXX"))
{
    m_running = makeFolder() && makeDataFolder() && configure() && startOnFreePort();
}

PostgresCluster::~PostgresCluster()
{
    if (m_running)
        stopWithMode(QStringLiteral("immediate"));
}

PostgresCluster &PostgresCluster::shared()
{
    static PostgresCluster *cluster = nullptr;
    if (!cluster) {
        cluster = new PostgresCluster;
        qAddPostRoutine([] {
            delete cluster;
            cluster = nullptr;
        });
    }
    return *cluster;
}

bool PostgresCluster::makeFolder()
{
    if (ServerPrograms::folder().isEmpty()) {
        fail(QStringLiteral("No PostgreSQL server found: install the package postgresql, or set "
                            "DX_PG_BINDIR to the folder of initdb and pg_ctl"));
        return false;
    }
    if (::geteuid() == 0 && !ServerPrograms::otherUser()) {
        fail(QStringLiteral("PostgreSQL does not run as root, and there is no user postgres"));
        return false;
    }
    m_owner = std::make_unique<FileLock>(m_folder.filePath(QStringLiteral("owner")));
    if (!m_folder.isValid() || !m_owner->isHeld()
        || !ServerPrograms::giveToServerUser(m_folder.path())) {
        fail(QStringLiteral("Cannot make a folder for a server in /tmp: ")
             + m_folder.errorString());
        return false;
    }

    // Detached, so that not even killing the whole tree of our processes keeps it from seeing that
    // the lock became free and tidying up. Once we have tidied up ourselves it finds nothing to do.
    const Program::Init stop = ServerPrograms::asServerUser(
        QStringLiteral("pg_ctl"),
        {QStringLiteral("stop"), QStringLiteral("--silent"), QStringLiteral("--mode=immediate"),
         QStringLiteral("-D"), dataFolder()});
    const Program watchdog(
        {.program = QStringLiteral("setsid"),
         .arguments = QStringList{QStringLiteral("--fork"), QStringLiteral("flock"),
                                  m_folder.filePath(QStringLiteral("owner")), QStringLiteral("sh"),
                                  QStringLiteral("-c"),
                                  QStringLiteral("folder=$1; shift; \"$@\"; rm -rf \"$folder\""),
                                  QStringLiteral("sh"), m_folder.path(), stop.program}
                      + stop.arguments});
    if (!watchdog.succeeded())
        fail(watchdog.failure());
    return watchdog.succeeded();
}

bool PostgresCluster::initialise(const QString &dataFolder) const
{
    const QString locale =
        m_options.encoding == u"UTF8" ? QStringLiteral("C.UTF-8") : QStringLiteral("C");
    const Program initdb(ServerPrograms::asServerUser(
        QStringLiteral("initdb"),
        {QStringLiteral("--no-sync"), QStringLiteral("--auth=trust"),
         QStringLiteral("--username=") + superuser(),
         QStringLiteral("--encoding=") + m_options.encoding, QStringLiteral("--locale=") + locale,
         QStringLiteral("-D"), dataFolder}));
    if (!initdb.succeeded())
        fail(initdb.failure());
    return initdb.succeeded();
}

// Copying a fresh data folder takes a tenth of the time of making one.
bool PostgresCluster::makeDataFolder()
{
    const QDir templates(QStringLiteral(DX_TEST_CLUSTER_TEMPLATES));
    templates.mkpath(QStringLiteral("."));
    const QByteArray version = ServerPrograms::version().toUtf8();
    const QByteArray key = QCryptographicHash::hash(version, QCryptographicHash::Sha1).toHex();
    const QString path = templates.filePath(m_options.encoding + u'-' + QString::number(::geteuid())
                                            + u'-' + QString::fromLatin1(key));
    const auto copy = [](const QString &from, const QString &to) {
        const Program program(
            {.program = QStringLiteral("cp"), .arguments = {QStringLiteral("-a"), from, to}});
        if (!program.succeeded())
            fail(program.failure());
        return program.succeeded();
    };
    if (!QFile::exists(path)) {
        const FileLock lock(path + QStringLiteral(".lock"));
        if (!lock.isHeld())
            return initialise(dataFolder()); // a build tree of somebody else's
        const QString unfinished = path + QStringLiteral(".unfinished");
        QDir(unfinished).removeRecursively();
        // Made in our folder, since the server's user may not enter the build tree.
        const QString fresh = m_folder.filePath(QStringLiteral("fresh"));
        if (!QFile::exists(path)
            && !(initialise(fresh) && copy(fresh, unfinished) && QDir().rename(unfinished, path)))
            return false;
    }
    return copy(path, dataFolder());
}

void PostgresCluster::writeFile(const QString &name, const QByteArray &content) const
{
    QFile file(dataFolder() + u'/' + name);
    if (!file.open(QFile::WriteOnly) || file.write(content) != content.size()
        || !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner)
        || !ServerPrograms::giveToServerUser(file.fileName()))
        fail(QStringLiteral("Cannot write %1: %2").arg(file.fileName(), file.errorString()));
}

QString PostgresCluster::copyForServer(const QString &file, const QString &name) const
{
    if (!file.isEmpty())
        writeFile(name, contentOf(file));
    return file.isEmpty() ? QString() : name;
}

bool PostgresCluster::configure()
{
    QStringList lines{QStringLiteral("local all dba trust")};
    lines += m_options.hba.isEmpty()
                 ? QStringList{QStringLiteral("local all all trust"),
                               QStringLiteral("host all all 127.0.0.1/32 trust")}
                 : m_options.hba;
    writeFile(QStringLiteral("pg_hba.conf"), lines.join(u'\n').toUtf8() + '\n');

    // Commits wait for the kernel to take them (not for a disk), so that killHard() loses none.
    QStringList settings{QStringLiteral("fsync = off"), QStringLiteral("full_page_writes = off"),
                         QStringLiteral("unix_socket_directories = '%1'").arg(socketFolder()),
                         QStringLiteral("timezone = 'UTC'"), QStringLiteral("lc_messages = 'C'"),
                         // Nothing of a killed server stays outside of its folder.
                         QStringLiteral("dynamic_shared_memory_type = mmap")};
    settings += m_options.tcp ? QStringLiteral("listen_addresses = '127.0.0.1'")
                              : QStringLiteral("listen_addresses = ''");
    if (const auto &tls = m_options.tls) {
        const QString line = QStringLiteral("%1 = '%2'");
        settings += QStringLiteral("ssl = on");
        settings += line.arg(u"ssl_cert_file",
                             copyForServer(tls->certificate, QStringLiteral("server.crt")));
        settings +=
            line.arg(u"ssl_key_file", copyForServer(tls->key, QStringLiteral("server.key")));
        settings +=
            line.arg(u"ssl_ca_file", copyForServer(tls->authority, QStringLiteral("root.crt")));
        settings += line.arg(u"ssl_crl_file",
                             copyForServer(tls->revocationList, QStringLiteral("root.crl")));
    }
    settings += m_options.configuration;
    QByteArray content = contentOf(dataFolder() + QStringLiteral("/postgresql.conf"));
    content += settings.join(u'\n').toUtf8() + '\n';
    writeFile(QStringLiteral("postgresql.conf"), content);
    return true;
}

QString PostgresCluster::tryStart() const
{
    const Program program(ServerPrograms::asServerUser(
        QStringLiteral("pg_ctl"),
        {QStringLiteral("start"), QStringLiteral("--wait"), QStringLiteral("--silent"),
         QStringLiteral("-D"), dataFolder(), QStringLiteral("-l"), logFile(), QStringLiteral("-o"),
         QStringLiteral("-p %1").arg(m_port)}));
    return program.succeeded() ? QString() : program.failure() + serverLog();
}

bool PostgresCluster::startOnFreePort()
{
    constexpr int attempts = 5;
    QString failure;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (m_options.tcp)
            m_port = freePort();
        failure = tryStart();
        if (!failure.contains(u"could not bind"))
            break;
    }
    if (!failure.isEmpty())
        fail(failure);
    return failure.isEmpty();
}

void PostgresCluster::start()
{
    const QString failure = tryStart();
    m_running = failure.isEmpty();
    if (!m_running)
        fail(failure);
}

void PostgresCluster::stopWithMode(const QString &mode) const
{
    const Program program(ServerPrograms::asServerUser(
        QStringLiteral("pg_ctl"),
        {QStringLiteral("stop"), QStringLiteral("--wait"), QStringLiteral("--silent"),
         QStringLiteral("--mode=") + mode, QStringLiteral("-D"), dataFolder()}));
    if (!program.succeeded())
        fail(program.failure() + serverLog());
}

void PostgresCluster::stop()
{
    stopWithMode(QStringLiteral("fast"));
    m_running = false;
}

void PostgresCluster::killHard()
{
    const QList<QByteArray> lines =
        contentOf(dataFolder() + QStringLiteral("/postmaster.pid")).split('\n');
    const pid_t server = lines.value(0).toInt();
    if (server <= 0) {
        fail(QStringLiteral("No server runs in ") + dataFolder());
        return;
    }
    // Stopped first, so that it neither starts another process nor tidies up after its children.
    ::kill(server, SIGSTOP);
    const QList<pid_t> processes = childrenOf(server) << server;
    for (const pid_t process : processes)
        ::kill(process, SIGKILL);
    for (const pid_t process : processes) {
        QDeadlineTimer limit(30'000);
        while (processState(process) != '\0' && processState(process) != 'Z') {
            if (limit.hasExpired()) {
                fail(QStringLiteral("Process %1 of the server survives SIGKILL").arg(process));
                return;
            }
            QThread::msleep(1);
        }
    }
    // Where process 1 is slow to wait for orphans, the next start would take the dead for alive.
    QFile::remove(dataFolder() + QStringLiteral("/postmaster.pid"));
    QFile::remove(m_folder.filePath(QStringLiteral(".s.PGSQL.%1.lock").arg(m_port)));
    // What the kernel keeps of a killed server: the segment that tells whether another one runs.
    constexpr qsizetype sharedMemoryLine = 6;
    const QList<QByteArray> keyAndId = lines.value(sharedMemoryLine).simplified().split(' ');
    if (keyAndId.size() == 2)
        ::shmctl(keyAndId[1].toInt(), IPC_RMID, nullptr);
    m_running = false;
}

QString PostgresCluster::psql(const QString &sql, const QString &database) const
{
    const Program program(
        {.program = ServerPrograms::psql(),
         .arguments = {QStringLiteral("--no-psqlrc"), QStringLiteral("--quiet"),
                       QStringLiteral("--no-align"), QStringLiteral("--tuples-only"),
                       QStringLiteral("--set=ON_ERROR_STOP=1"), QStringLiteral("--host"),
                       socketFolder(), QStringLiteral("--port"), QString::number(m_port),
                       QStringLiteral("--username"), superuser(), QStringLiteral("--dbname"),
                       database, QStringLiteral("--file=-")},
         .input = "SET client_encoding TO 'UTF8';" + sql.toUtf8(),
         .environment = ServerPrograms::environment()});
    if (!program.succeeded())
        fail(program.failure() + sql);
    return QString::fromUtf8(program.output().trimmed());
}

void PostgresCluster::createDatabase(const QString &name, const QString &encoding) const
{
    QString quoted = name;
    quoted.replace(u'"', QStringLiteral("\"\""));
    QString sql = QStringLiteral("CREATE DATABASE \"%1\" TEMPLATE template0").arg(quoted);
    if (!encoding.isEmpty() && encoding != m_options.encoding)
        sql += QStringLiteral(" ENCODING '%1' LC_COLLATE 'C' LC_CTYPE 'C'").arg(encoding);
    psql(sql);
}

QString PostgresCluster::serverLog() const
{
    return QString::fromUtf8(contentOf(logFile()));
}
