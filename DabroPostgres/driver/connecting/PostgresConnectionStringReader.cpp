// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/connecting/PostgresConnectionStringReader.h"

#include "client/secrets/DXSecurityBookmarkHelper.h"
#include "driver/PostgresDatabaseConnectionDetails.h"
#include "driver/connecting/PostgresConnectionOptions.h"
#include "driver/connecting/PostgresConnectionParameters.h"
#include "driver/connecting/PostgresSessionSettings.h"

#include <QFileInfo>

#include <algorithm>

namespace
{

using Options = PostgresConnectionOptions;
namespace Parameters = PostgresConnectionParameters;

constexpr QLatin1String hostAddressKeyword("hostaddr");

const QStringList &sslKeywords()
{
    static const QStringList keywords{QStringLiteral("sslmode"), QStringLiteral("sslcert"),
                                      QStringLiteral("sslkey"),  QStringLiteral("sslrootcert"),
                                      QStringLiteral("sslcrl"),  QStringLiteral("sslcompression")};
    return keywords;
}

bool refuse(DXError *error, const QString &text)
{
    DXError::report(error, DXError(QStringLiteral("postgres.connectionString"), 0, text));
    return false;
}

QString remedyFor(const Options &options, const QString &keyword)
{
    if (!options.explicitValues().contains(keyword))
        return QStringLiteral(
                   "It comes from the service \"%1\": name the service in the environment "
                   "variable PGSERVICE instead.")
            .arg(options.explicitValues().value(QStringLiteral("service")));
    const QString variable = options.environmentVariable(keyword);
    if (variable.isEmpty())
        return QStringLiteral("Leave it out.");
    return QStringLiteral("Set the environment variable %1 instead.").arg(variable);
}

// libpq pairs the addresses with the hosts of a list, which a record has for one name only.
bool isListOfAddresses(const Options &options, const QString &keyword)
{
    return keyword == hostAddressKeyword
           && (options.value(keyword) + options.value(QStringLiteral("host")))
                  .contains(QLatin1Char(','));
}

bool checkThatAllIsCarried(const Options &options, DXError *error)
{
    const QStringList keywords = options.keywords();
    for (const QString &keyword : keywords) {
        const bool isCarried = Parameters::placeOf(keyword) != Parameters::Place::Nowhere
                               && !isListOfAddresses(options, keyword);
        if (isCarried || options.isSameWithoutString(keyword))
            continue;
        return refuse(error, QStringLiteral("A connection cannot carry the parameter \"%1\". %2")
                                 .arg(keyword, remedyFor(options, keyword)));
    }
    if (options.isGiven(QStringLiteral("sslcrl"))
        && options.value(QStringLiteral("sslrootcert")).isEmpty())
        return refuse(error,
                      QStringLiteral("The revocation list of \"sslcrl\" is used only together "
                                     "with a root certificate: add \"sslrootcert\"."));
    return true;
}

/// A text that the connection string holds between apostrophes, as it is.
bool readPlainText(const Options &options, const QString &keyword, QString &text, DXError *error)
{
    text = options.value(keyword);
    if (!text.contains(QLatin1Char('\'')) && !text.contains(QLatin1Char('\\')))
        return true;
    return refuse(error, QStringLiteral("The value of \"%1\" must not hold an apostrophe or a "
                                        "backslash: \"%2\".")
                             .arg(keyword, text));
}

bool readPort(const Options &options, quint16 &port, DXError *error)
{
    QStringList ports = options.value(QStringLiteral("port")).split(QLatin1Char(','));
    ports.replaceInStrings(QStringLiteral("^$"),
                           QString::number(PostgresDatabaseConnectionDetails::defaultPort));
    ports.removeDuplicates();
    if (ports.size() > 1)
        return refuse(error, QStringLiteral("A connection has one port for all of its hosts, not "
                                            "\"%1\".")
                                 .arg(ports.join(QLatin1Char(','))));
    bool isNumber = false;
    port = ports.first().trimmed().toUShort(&isNumber);
    if (isNumber && port != 0)
        return true;
    return refuse(error, QStringLiteral("The port must be a number from 1 to 65535, not \"%1\".")
                             .arg(ports.first()));
}

bool readPassword(const Options &options, QString &password, DXError *error)
{
    const QString keyword = QStringLiteral("password");
    const QString text = options.value(keyword);
    if (!text.contains(QLatin1Char('\\'))) {
        password = text;
        return true;
    }
    // The quoting of a connection string changes it; what the environment holds, libpq reads there.
    return !options.isGiven(keyword)
           || refuse(error, QStringLiteral(
                                "A connection cannot carry a password with a backslash. Set the "
                                "environment variable PGPASSWORD instead, or write it into the "
                                "password file (~/.pgpass)."));
}

bool readLogin(const Options &options, PostgresDatabaseConnectionDetails &details, DXError *error)
{
    QString host;
    QString user;
    QString database;
    QString password;
    quint16 port = 0;
    if (!readPlainText(options, QStringLiteral("host"), host, error)
        || !readPlainText(options, QStringLiteral("user"), user, error)
        || !readPlainText(options, QStringLiteral("dbname"), database, error)
        || !readPassword(options, password, error) || !readPort(options, port, error))
        return false;
    details.setHost(host);
    details.setPort(port);
    details.setUsername(user);
    details.setPassword(password);
    // libpq names the user's own database when none is given; the record leaves that open.
    if (!options.explicitValues().value(QStringLiteral("dbname")).isEmpty() || database != user)
        details.setDatabase(database);
    return true;
}

QString fileToken(const Options &options, const QString &keyword)
{
    const QString path = options.value(keyword);
    return path.isEmpty() ? QString()
                          : DXSecurityBookmarkHelper::sharedInstance().createSecurePath(
                              QFileInfo(path).absoluteFilePath());
}

void readSsl(const Options &options, PostgresDatabaseConnectionDetails &details)
{
    const bool isAnyGiven =
        std::any_of(sslKeywords().begin(), sslKeywords().end(), [&](const QString &keyword) {
            return options.isGiven(keyword) || options.isConfigured(keyword);
        });
    if (!isAnyGiven)
        return;
    const auto ssl = std::make_shared<PostgresSSLDetails>();
    ssl->setSslMode(PostgresSSLDetails::canonicalMode(options.value(QStringLiteral("sslmode"))));
    ssl->setClientCertificate(fileToken(options, QStringLiteral("sslcert")));
    ssl->setClientKeyFile(fileToken(options, QStringLiteral("sslkey")));
    ssl->setServerRootCertificate(fileToken(options, QStringLiteral("sslrootcert")));
    ssl->setServerRevocationList(fileToken(options, QStringLiteral("sslcrl")));
    ssl->setSslCompression(options.value(QStringLiteral("sslcompression")) == QLatin1String("1"));
    details.setSslDetails(ssl);
}

bool readSettings(const Options &options, PostgresDatabaseConnectionDetails &details,
                  DXError *error)
{
    QMap<QString, QString> settings;
    const QString applicationName = QStringLiteral("application_name");
    const QString fallbackName = options.value(QStringLiteral("fallback_application_name"));
    if (options.value(applicationName).isEmpty() && !fallbackName.isEmpty()
        && !PostgresSessionSettings::add(applicationName, fallbackName, settings, error))
        return false;
    for (const QString &keyword : {applicationName, QStringLiteral("client_encoding")}) {
        if (options.isGiven(keyword)
            && !PostgresSessionSettings::add(keyword, options.value(keyword), settings, error))
            return false;
    }
    const QString commandLine = QStringLiteral("options");
    if (options.isGiven(commandLine)
        && !PostgresSessionSettings::addOptions(options.value(commandLine), settings, error))
        return false;
    details.setConnectionSessionPreferences(settings);
    return true;
}

QString parameterValue(const Options &options, const QString &name)
{
    const QString value = options.value(name);
    const bool isPath = name == QLatin1String("passfile") || name == QLatin1String("sslcrldir");
    return isPath && !value.isEmpty() ? QFileInfo(value).absoluteFilePath() : value;
}

bool readParameters(const Options &options, PostgresDatabaseConnectionDetails &details,
                    DXError *error)
{
    QMap<QString, QString> parameters;
    const QStringList names = Parameters::names();
    for (const QString &name : names) {
        const QString value = parameterValue(options, name);
        if (options.isGiven(name) && !value.isEmpty()
            && !Parameters::add(name, value, parameters, error))
            return false;
    }
    if (details.host().isEmpty())
        details.setHost(parameters.take(hostAddressKeyword));
    details.setConnectionParameters(parameters);
    return true;
}

} // namespace

std::shared_ptr<PostgresDatabaseConnectionDetails>
PostgresConnectionStringReader::read(const QString &text, DXError *error)
{
    const auto options = PostgresConnectionOptions::parse(text, error);
    if (!options || !checkThatAllIsCarried(*options, error))
        return nullptr;
    auto details = std::make_shared<PostgresDatabaseConnectionDetails>();
    if (!readLogin(*options, *details, error) || !readSettings(*options, *details, error)
        || !readParameters(*options, *details, error))
        return nullptr;
    readSsl(*options, *details);
    return details;
}
