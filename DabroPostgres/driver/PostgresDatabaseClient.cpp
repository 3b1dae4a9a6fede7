// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresDatabaseClient.h"

#include "client/DXHostCache.h"
#include "client/ssh/DXSSHTunnel.h"
#include "core/DXLogHelper.h"
#include "dispatch/DXDispatch.h"
#include "driver/PostgresDatabaseResultSet.h"
#include "driver/connecting/PostgresConnectionHandle.h"
#include "driver/connecting/PostgresConnectionParameters.h"
#include "driver/connecting/PostgresPasswordFile.h"

#include <QFile>
#include <QRegularExpression>

#include <poll.h>

#include <cstdio>

namespace
{

// A socket of ssh's may close a moment before ssh is seen to have ended.
constexpr std::chrono::milliseconds tunnelsPatience(250);

void initializeLibpq()
{
    static const bool initialized = [] {
        DXLog(QString::asprintf("PQlibVersion version: %d", PQlibVersion()));
        PQinitOpenSSL(1, 1);
        return true;
    }();
    Q_UNUSED(initialized)
}

const QRegularExpression &postgresVersionRegularExpression()
{
    static const QRegularExpression expression(QStringLiteral("(\\d+(\\.\\d+)+)"));
    return expression;
}

void printNotice(void *, const char *message)
{
    std::fputs(message, stderr);
}

// A network that is cut while data is on its way would hold up whoever waits for a quarter of an
// hour; a server that went away without a word, or a laptop that slept, for two hours (tcp(7)).
// Asked three times, the silent peer is given up within the minute that data may be on its way.
// Entries of the string itself come later, so they win; those of a service would not. libpq leaves
// all of it out where there is a Unix socket.
QString withLimitOnSilence(const QString &connectionString)
{
    const QMap<QByteArray, QByteArray> limits{{"tcp_user_timeout", "60000"},
                                              {"keepalives_idle", "30"},
                                              {"keepalives_interval", "10"},
                                              {"keepalives_count", "3"}};
    QByteArray entries;
    const std::unique_ptr<PQconninfoOption, decltype(&PQconninfoFree)> defaults(PQconndefaults(),
                                                                                PQconninfoFree);
    for (const auto *option = defaults.get(); option && option->keyword; ++option) {
        if (limits.contains(option->keyword) && !option->val)
            entries += QByteArray(option->keyword) + '=' + limits.value(option->keyword) + ' ';
    }
    return QString::fromLatin1(entries) + connectionString;
}

void forwardNotice(void *handler, const char *message)
{
    (*static_cast<const DabroDatabaseClient::NoticeHandler *>(handler))(QString::fromUtf8(message));
}

// Since version 14 libpq says which connection failed before it says why.
bool saysThatDatabaseIsAbsent(const QString &message)
{
    static const QRegularExpression expression(
        QStringLiteral("\\A(?:connection to server (?:at|on) [^\\n]*? failed: )?FATAL:  database "),
        QRegularExpression::CaseInsensitiveOption);
    return expression.match(message).hasMatch();
}

// libpq says so on standard error only, which nobody sees.
DXError withPasswordFilesFault(PGconn *connection, const DXError &failure)
{
    QString path;
    const std::unique_ptr<PQconninfoOption, decltype(&PQconninfoFree)> options(
        PQconninfo(connection), &PQconninfoFree);
    for (const auto *option = options.get(); option && option->keyword; ++option) {
        if (option->val && QByteArrayView(option->keyword) == "passfile")
            path = QFile::decodeName(option->val);
    }
    if (!PostgresPasswordFile(path).isOpenToOthers())
        return failure;
    return failure.withDescription(
        QStringLiteral("%1\nThe password file \"%2\" is not used, since it is open to others. "
                       "Close it with: chmod 600 %2")
            .arg(failure.description().trimmed(), path));
}

} // namespace

PostgresDatabaseClient::PostgresDatabaseClient()
{
    initializeLibpq();
}

PostgresDatabaseClient::PostgresDatabaseClient(
    const std::shared_ptr<PostgresDatabaseConnectionDetails> &details)
    : PostgresDatabaseClient()
{
    setDatabaseConnectionDetails(details);
}

PostgresDatabaseClient::~PostgresDatabaseClient()
{
    disconnect();
}

const PostgresDatabaseConnectionDetails &PostgresDatabaseClient::postgresDetails() const
{
    return static_cast<const PostgresDatabaseConnectionDetails &>(*databaseConnectionDetails());
}

bool PostgresDatabaseClient::connect(DXError *error, DXSSHDelegate *sshDelegate)
{
    DX_ASSERT_BACKGROUND();
    DXError failure;
    const bool isUsable = openConnection(sshDelegate, &failure) && applySessionPreferences(&failure)
                          && readVersion(&failure);
    if (failure)
        DXError::report(error, failure);
    return isUsable;
}

bool PostgresDatabaseClient::openConnection(DXSSHDelegate *sshDelegate, DXError *error)
{
    const PostgresDatabaseConnectionDetails &details = postgresDetails();
    if (!openTunnel(sshDelegate, error))
        return false;
    openHandle(details.database());
    if (!m_internalConnection->isOk() && details.database().isEmpty()
        && saysThatDatabaseIsAbsent(m_internalConnection->errorMessage())) {
        if (!openTunnel(sshDelegate, error))
            return false;
        openHandle(QStringLiteral("postgres"));
    }
    if (!m_internalConnection->isOk()) {
        DXError::report(error, connectionFailure());
        DXLog(QStringLiteral("Connection to database failed: %1")
                  .arg(m_internalConnection->errorMessage()));
        return false;
    }
    if (noticeHandler())
        PQsetNoticeProcessor(m_internalConnection->get(), forwardNotice,
                             const_cast<NoticeHandler *>(&noticeHandler()));
    else
        PQsetNoticeProcessor(m_internalConnection->get(), printNotice, nullptr);
    return prepareEncoding(error);
}

// libpq only sees a tunnel's local end closing; why it did, ssh knows.
DXError PostgresDatabaseClient::connectionFailure() const
{
    DXError failure = m_internalConnection->error();
    if (connectionNeedsPassword() && postgresDetails().password().isEmpty())
        failure = withPasswordFilesFault(m_internalConnection->get(), failure);
    if (!m_passwordFile.isEmpty()
        && failure.description().contains(QLatin1String("password authentication failed")))
        failure =
            failure.withDescription(QStringLiteral("%1\npassword retrieved from file \"%2\"")
                                        .arg(failure.description().trimmed(), m_passwordFile));
    const QString said = m_tunnel ? m_tunnel->standardError().trimmed() : QString();
    return said.isEmpty() ? failure : failure.withDetail(DXSSHTunnel::standardErrorKey(), said);
}

// libpq blames the server for a tunnel that was cut.
DXError PostgresDatabaseClient::withTunnelsEnd(const DXError &failure) const
{
    if (!failure || !m_tunnel || isConnected())
        return failure;
    const QString reason = m_tunnel->endingWithin(tunnelsPatience);
    return reason.isEmpty() ? failure
                            : failure.withDescription(
                                QStringLiteral("The SSH tunnel through %1 broke, and the "
                                               "connection with it.\n%2")
                                    .arg(postgresDetails().sshTunnelModel()->host, reason));
}

bool PostgresDatabaseClient::prepareEncoding(DXError *error)
{
    PGconn *const connection = m_internalConnection->get();
    // Bytes of no known encoding, most often UTF-8, arrive as they are: asked for UTF-8, the server
    // would refuse a whole query for one cell that is something else.
    const QByteArrayView serverEncoding = PQparameterStatus(connection, "server_encoding");
    const char *const encoding = serverEncoding == "SQL_ASCII" ? "SQL_ASCII" : "UTF8";
    if (QByteArrayView(PQparameterStatus(connection, "client_encoding")) == encoding)
        return true;
    // Not in the connection string: a pooler may refuse start-up parameters that it does not know.
    if (PQsetClientEncoding(connection, encoding) == 0)
        return true;
    DXError::report(error, m_internalConnection->error());
    return false;
}

bool PostgresDatabaseClient::openTunnel(DXSSHDelegate *sshDelegate, DXError *error)
{
    if (!postgresDetails().sshTunnelModel())
        return true;
    if (m_tunnel)
        m_tunnel->disconnect();
    DXError failure;
    m_tunnel = initializeSSH(sshDelegate, &failure);
    if (failure)
        DXError::report(error, failure);
    return m_tunnel && !failure;
}

void PostgresDatabaseClient::openHandle(const QString &database)
{
    if (postgresDetails().needsHostName())
        DXHostCache::sharedInstance().pinHost(postgresDetails().host());
    QString connectionString =
        withLimitOnSilence(generateConnectionString(m_tunnel.get(), database));
    m_passwordFile = QString();
    if (m_tunnel) {
        const auto found = PostgresPasswordFile::find(postgresDetails(), database);
        m_passwordFile = found.path;
        if (!found.password.isEmpty())
            connectionString +=
                QLatin1Char(' ')
                + PostgresConnectionParameters::entry(QStringLiteral("password"), found.password);
    }
    auto handle = std::make_shared<PostgresConnectionHandle>(
        PQconnectdb(connectionString.toUtf8().constData()));
    const std::lock_guard lock(m_handleMutex);
    m_internalConnection.swap(handle);
}

bool PostgresDatabaseClient::applySessionPreferences(DXError *error)
{
    QStringList statements;
    const QMap<QString, QString> preferences = postgresDetails().connectionSessionPreferences();
    for (auto entry = preferences.cbegin(); entry != preferences.cend(); ++entry) {
        const QString &name = entry.key();
        const QString &value = entry.value();
        if (value.isEmpty() || value.compare(QLatin1String("default"), Qt::CaseInsensitive) == 0)
            continue;
        if (name.compare(QLatin1String("timezone"), Qt::CaseInsensitive) == 0)
            statements.append(QStringLiteral("SET TIME ZONE '%1'").arg(value));
        else if (name.compare(QLatin1String("searchpath"), Qt::CaseInsensitive) == 0)
            statements.append(QStringLiteral("SET search_path '%1'").arg(value));
        else
            statements.append(QStringLiteral("SET %1 TO %2").arg(name, value));
    }
    if (statements.isEmpty())
        return true;
    DXError failure;
    executeNonQuery(statements.join(QLatin1String(";\r\n")), &failure);
    if (failure)
        DXError::report(error, failure);
    return failure.isEmpty();
}

bool PostgresDatabaseClient::readVersion(DXError *error)
{
    DXError failure;
    m_internalVersionString = QString();
    if (const auto resultSet = executeQuery(QStringLiteral("SELECT version()"), &failure)) {
        while (resultSet->next(&failure)) {
            const DXValue version = resultSet->stringForColumnIndex(0);
            m_internalVersionString = version.isText() ? version.toText() : QString();
        }
    }
    if (failure)
        DXError::report(error, failure);
    if (failure || m_internalVersionString.isNull())
        return false;
    const auto match = postgresVersionRegularExpression().match(m_internalVersionString);
    if (match.hasMatch())
        m_internalVersionString = match.captured(1);
    return true;
}

void PostgresDatabaseClient::disconnect()
{
    {
        const std::lock_guard lock(m_handleMutex);
        if (m_internalConnection)
            m_internalConnection->close();
        m_internalConnection.reset();
    }
    m_tunnel.reset();
}

bool PostgresDatabaseClient::isConnected() const
{
    return m_internalConnection && m_internalConnection->isOk();
}

bool PostgresDatabaseClient::isAlive() const
{
    if (!isConnected())
        return false;
    PGconn *const connection = m_internalConnection->get();
    pollfd readable{PQsocket(connection), POLLIN, 0};
    // An idle server says nothing but notices, parameter changes and, at last, that it goes.
    while (isConnected() && ::poll(&readable, 1, 0) > 0) {
        if (PQconsumeInput(connection) == 0)
            return false;
        PQisBusy(connection);
    }
    return isConnected();
}

bool PostgresDatabaseClient::isInTransaction() const
{
    if (!isConnected())
        return false;
    const PGTransactionStatusType status = PQtransactionStatus(m_internalConnection->get());
    return status == PQTRANS_ACTIVE || status == PQTRANS_INTRANS || status == PQTRANS_INERROR;
}

bool PostgresDatabaseClient::hasFailedTransaction() const
{
    return isConnected() && PQtransactionStatus(m_internalConnection->get()) == PQTRANS_INERROR;
}

bool PostgresDatabaseClient::resetSession(DXError *error)
{
    DX_ASSERT_BACKGROUND();
    DXError failure;
    if (isInTransaction())
        rollbackTransaction(&failure);
    if (!failure)
        executeNonQuery(QStringLiteral("DISCARD ALL"), &failure);
    if (failure) {
        DXError::report(error, failure);
        return false;
    }
    return prepareEncoding(error) && applySessionPreferences(error);
}

void PostgresDatabaseClient::reportError(const DXError &error, const QString &details)
{
    reportError(error, QVariantMap{{QStringLiteral("Details"), details}});
}

void PostgresDatabaseClient::reportError(const DXError &error, const QVariantMap &details)
{
    if (error.description().contains(QLatin1String("Operation timed out"))
        || error.description().contains(QLatin1String("pg_hba.conf rejects")))
        return;
    DXLogHelper::sharedInstance().logError(error, details);
}
