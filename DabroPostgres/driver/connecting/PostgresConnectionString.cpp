// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresDatabaseClient.h"

#include "client/DXHostCache.h"
#include "client/secrets/DXSecurityBookmarkHelper.h"
#include "client/ssh/DXSSHTunnel.h"
#include "core/DXLogHelper.h"
#include "driver/connecting/PostgresConnectionParameters.h"

namespace
{

QString quoted(const QString &keyword, const QString &value)
{
    return QStringLiteral("%1='%2'").arg(keyword, value);
}

void appendFile(QStringList &options, const QString &keyword, const QString &token)
{
    const QString path =
        DXSecurityBookmarkHelper::sharedInstance().loadSecurePath(token).toLocalFile();
    options.append(keyword + QLatin1Char('=')
                   + PostgresDatabaseClient::escapeConnectionStringEntry(path));
}

void appendParameters(QStringList &options, const QMap<QString, QString> &parameters,
                      bool isTunnelled)
{
    for (auto entry = parameters.cbegin(); entry != parameters.cend(); ++entry) {
        // An address of the server's would lead past the tunnel.
        if (!isTunnelled || entry.key() != QLatin1String("hostaddr"))
            options.append(PostgresConnectionParameters::entry(entry.key(), entry.value()));
    }
}

// The password stands in the string in its quoted form, which may differ from its text; where it
// does not, one pass must do, or a password such as "pass" would be masked within the mask.
QString masked(QString connectionString, const QString &password)
{
    if (password.isEmpty())
        return connectionString;
    const QString mask = QStringLiteral("<password>");
    const QString entry = PostgresDatabaseClient::escapeConnectionStringEntry(password);
    const QString quotedForm = entry.sliced(1, entry.size() - 2);
    if (quotedForm != password)
        connectionString.replace(quotedForm, mask);
    return connectionString.replace(password, mask);
}

} // namespace

QString PostgresDatabaseClient::generateConnectionString(const DXSSHTunnel *tunnel,
                                                         const QString &database) const
{
    const PostgresDatabaseConnectionDetails &details = postgresDetails();
    QStringList options;
    if (!database.isEmpty())
        options.append(quoted(QStringLiteral("dbname"), database));

    const quint16 port = tunnel ? tunnel->localPort() : details.port();
    const QString host = tunnel ? QStringLiteral("127.0.0.1") : details.host();
    if (port != 0)
        options.append(QStringLiteral("port=%1").arg(port));
    const QString address = DXHostCache::sharedInstance().cachedIPAddressForHost(host);
    if (!address.isEmpty())
        options.append(quoted(QStringLiteral("host"), address));

    if (!details.username().isEmpty())
        options.append(quoted(QStringLiteral("user"), details.username()));
    if (!details.password().isEmpty())
        options.append(QStringLiteral("password=")
                       + escapeConnectionStringEntry(details.password()));
    if (details.sslDetails())
        processSSQLConnectionString(details, options);
    else
        options.append(QStringLiteral("sslmode=prefer"));
    appendParameters(options, details.connectionParameters(), tunnel != nullptr);

    QString connectionString = options.join(QLatin1Char(' '));
    DXLog(QStringLiteral("Postgres connection string is [%1]")
              .arg(masked(connectionString, details.password())));
    return connectionString;
}

void PostgresDatabaseClient::processSSQLConnectionString(
    const PostgresDatabaseConnectionDetails &details, QStringList &connectionOptions) const
{
    const PostgresSSLDetails &ssl = *details.sslDetails();
    connectionOptions.append(QStringLiteral("sslmode=") + ssl.sslMode());
    if (ssl.sslMode() == QLatin1String("disable"))
        return;
    connectionOptions.append(ssl.sslCompression() ? QStringLiteral("sslcompression=1")
                                                  : QStringLiteral("sslcompression=0"));
    if (!ssl.clientCertificate().isEmpty())
        appendFile(connectionOptions, QStringLiteral("sslcert"), ssl.clientCertificate());
    if (!ssl.clientKeyFile().isEmpty())
        appendFile(connectionOptions, QStringLiteral("sslkey"), ssl.clientKeyFile());
    if (!ssl.serverRootCertificate().isEmpty()) {
        appendFile(connectionOptions, QStringLiteral("sslrootcert"), ssl.serverRootCertificate());
        appendFile(connectionOptions, QStringLiteral("sslcrl"), ssl.serverRevocationList());
    }
}

QString PostgresDatabaseClient::escapeConnectionStringEntry(const QString &text)
{
    QString escaped = text;
    escaped.replace(QLatin1String("\\"), QLatin1String("\\\\'"));
    escaped.replace(QLatin1String("'"), QLatin1String("\\'"));
    return QLatin1Char('\'') + escaped + QLatin1Char('\'');
}
