// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/PostgresConnectionFormController.h"

#include "dispatch/DXDispatch.h"
#include "driver/PostgresConnectionHelper.h"
#include "driver/PostgresDatabaseConnectionDetails.h"
#include "driver/PostgresRecentConnection.h"
#include "driver/connecting/PostgresConnectionStringReader.h"

#include <QRegularExpression>

namespace
{

using Controller = PostgresConnectionFormController;
using Fields = PostgresConnectionFields;

template<typename Record>
std::shared_ptr<Record> copyOf(const std::shared_ptr<Record> &record)
{
    return record ? std::make_shared<Record>(*record) : nullptr;
}

// The address of the host that it came with, and of no other.
const QString hostAddress = QStringLiteral("hostaddr");

QString portText(quint16 port)
{
    return port == 0 ? QString() : QString::number(port);
}

// The connection string holds these texts between apostrophes, as they are.
bool canBeCarried(const QString &text)
{
    return !text.contains(u'\'') && !text.contains(u'\\');
}

bool isPort(const QString &text)
{
    bool isNumber = false;
    return text.isEmpty() || (text.toUShort(&isNumber) != 0 && isNumber);
}

} // namespace

Fields Controller::fieldsOf(const PostgresRecentConnection &record)
{
    return {.name = record.alias(),
            .tabColor = record.tabColor(),
            .host = record.serverHost(),
            .port = portText(record.serverPort()),
            .user = record.username(),
            .password = record.password(),
            .rememberPassword = record.rememberPassword(),
            .database = record.database(),
            .tunnel = copyOf(record.sshTunnelDetails()),
            .ssl = copyOf(record.sslDetails()),
            .sessionParameters = record.connectionSessionParameters(),
            .connectionParameters = record.connectionParameters(),
            .groupSchemas = record.groupSchemas()};
}

std::shared_ptr<PostgresRecentConnection> Controller::recordOf(const Fields &fields,
                                                               const QString &connectionId)
{
    auto record = std::make_shared<PostgresRecentConnection>();
    record->setConnectionId(connectionId);
    record->setAlias(fields.name.trimmed());
    record->setTabColor(fields.tabColor);
    record->setServerHost(fields.host.trimmed());
    // The far end of a tunnel is not the client library's to choose.
    const bool isPortLeft = fields.port.trimmed().isEmpty() && fields.tunnel;
    record->setServerPort(isPortLeft ? PostgresDatabaseConnectionDetails::defaultPort
                                     : fields.port.trimmed().toUShort());
    record->setUsername(fields.user.trimmed());
    record->setPassword(fields.password);
    record->setRememberPassword(fields.rememberPassword);
    record->setDatabase(fields.database.trimmed());
    record->setSshTunnelDetails(copyOf(fields.tunnel));
    record->setSslDetails(copyOf(fields.ssl));
    record->setConnectionSessionParameters(fields.sessionParameters);
    record->setConnectionParameters(fields.connectionParameters);
    record->setGroupSchemas(fields.groupSchemas);
    return record;
}

std::shared_ptr<PostgresRecentConnection>
Controller::recordOf(const PostgresDatabaseConnectionDetails &details)
{
    const QString id = details.connectionId();
    const Fields fields{
        .name = details.alias(),
        .host = details.host(),
        .port = portText(details.port()),
        .user = details.username(),
        .password = details.password(),
        .database = details.database(),
        .tunnel = details.sshTunnelModel(),
        .ssl = details.sslDetails(),
        .sessionParameters = details.connectionSessionPreferences(),
        .connectionParameters = details.connectionParameters(),
        .groupSchemas = PostgresConnectionHelper::sharedInstance().groupBySchemaForDBC(details)};
    return recordOf(fields, id.isEmpty() ? SQLRecentConnection::createConnectionId() : id);
}

Controller::Problems Controller::problemsOf(const Fields &fields)
{
    Problems problems;
    const QString text = tr("An apostrophe or a backslash cannot be part of it.");
    if (!canBeCarried(fields.host))
        problems.insert(Field::Host, text);
    else if (fields.host.trimmed().contains(u' '))
        problems.insert(Field::Host, tr("A host's name holds no blanks."));
    else if (fields.connectionParameters.contains(hostAddress) && fields.host.contains(u','))
        problems.insert(Field::Host, tr("The connection parameter \"hostaddr\" is the address of "
                                        "one host, not of a list."));
    else if (fields.connectionParameters.contains(hostAddress) && fields.tunnel)
        problems.insert(Field::Host, tr("The connection parameter \"hostaddr\" would lead past the "
                                        "SSH tunnel: remove it, or write it here."));
    else if (fields.tunnel && fields.host.startsWith(u'/'))
        problems.insert(Field::Host, tr("Through an SSH tunnel a server is reached by its name or "
                                        "address, not by a socket folder."));
    if (!isPort(fields.port.trimmed()))
        problems.insert(Field::Port, tr("1 to 65535"));
    if (!canBeCarried(fields.user))
        problems.insert(Field::User, text);
    if (!canBeCarried(fields.database))
        problems.insert(Field::Database, text);
    if (fields.password.contains(u'\\'))
        problems.insert(Field::Password,
                        tr("A password with a backslash cannot be given here. Write it into the "
                           "password file (~/.pgpass) and leave this empty."));
    return problems;
}

bool Controller::isConnectionURI(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("\\A\\s*postgres(ql)?://"),
                                         QRegularExpression::CaseInsensitiveOption);
    return form.match(text).hasMatch();
}

bool Controller::isConnectionString(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("\\A\\s*(host|hostaddr|port|dbname|user|password|service|sslmode|"
                       "passfile|application_name|options|connect_timeout)\\s*=\\s*\\S"));
    return isConnectionURI(text) || form.match(text).hasMatch();
}

std::optional<Fields> Controller::read(const QString &text, DXError *error)
{
    DX_ASSERT_BACKGROUND();
    const auto details = PostgresConnectionStringReader::read(text.trimmed(), error);
    if (!details)
        return std::nullopt;
    return Fields{.host = details->host(),
                  .port = portText(details->port()),
                  .user = details->username(),
                  .password = details->password(),
                  .database = details->database(),
                  .ssl = details->sslDetails(),
                  .sessionParameters = details->connectionSessionPreferences(),
                  .connectionParameters = details->connectionParameters()};
}

Fields Controller::merged(Fields fields, const Fields &read)
{
    fields.host = read.host;
    fields.port = read.port;
    fields.user = read.user;
    fields.database = read.database;
    // A password that was typed for another server must not be sent to this one.
    fields.password = read.password;
    if (read.ssl)
        fields.ssl = read.ssl;
    fields.sessionParameters.insert(read.sessionParameters);
    fields.connectionParameters.remove(hostAddress);
    fields.connectionParameters.insert(read.connectionParameters);
    return fields;
}

// The client library has no codes for what fails before there is a session.
Controller::Problems Controller::problemsOf(const DXError &failure)
{
    const QString text = failure.description();
    const auto says = [&text](const char *words) { return text.contains(QLatin1String(words)); };
    if (says("password authentication failed"))
        return {{Field::Password, tr("The server did not accept this password for this user.")}};
    if (says("no password supplied"))
        return {{Field::Password, tr("The server asks for a password.")}};
    static const QRegularExpression noDatabase(
        QStringLiteral("FATAL:  database \".*\" does not exist"));
    if (text.contains(noDatabase))
        return {{Field::Database, tr("The server has no such database.")}};
    static const QRegularExpression noRole(QStringLiteral("FATAL:  role \".*\" does not exist"));
    if (text.contains(noRole))
        return {{Field::User, tr("The server knows no such user.")}};
    if (says("could not translate host name"))
        return {{Field::Host, tr("There is no host of this name.")}};
    if (says("No such file or directory") && says("socket"))
        return {{Field::Host, tr("No server listens on this socket.")}};
    if (says("Connection refused"))
        return {{Field::Port, tr("Nothing listens here")}};
    return {};
}

Fields Controller::withHost(Fields fields, const QString &host)
{
    if (fields.host.trimmed() != host.trimmed())
        fields.connectionParameters.remove(hostAddress);
    fields.host = host;
    return fields;
}

QString Controller::sslSummary(const std::shared_ptr<PostgresSSLDetails> &ssl)
{
    const QString mode = ssl ? ssl->sslMode() : QStringLiteral("prefer");
    const QMap<QString, QString> texts{
        {QStringLiteral("disable"), tr("Never")},
        {QStringLiteral("allow"), tr("Only if the server insists")},
        {QStringLiteral("prefer"), tr("If the server can")},
        {QStringLiteral("require"), tr("Always")},
        {QStringLiteral("verify-ca"), tr("Always, certificate checked")},
        {QStringLiteral("verify-full"), tr("Always, certificate and name checked")}};
    const QString text = texts.value(mode);
    return text.isEmpty() ? mode : QStringLiteral("%1 (%2)").arg(text, mode);
}

QString Controller::sessionSummary(const Fields &fields)
{
    QStringList parts;
    qsizetype others = 0;
    for (auto it = fields.sessionParameters.begin(); it != fields.sessionParameters.end(); ++it) {
        if (it.key().compare(QLatin1String("timezone"), Qt::CaseInsensitive) != 0)
            ++others;
        else if (!it.value().isEmpty())
            parts.append(it.value());
    }
    if (others > 0)
        parts.append(others == 1 ? tr("1 parameter") : tr("%1 parameters").arg(others));
    const qsizetype ofConnection = fields.connectionParameters.size();
    if (ofConnection > 0)
        parts.append(ofConnection == 1 ? tr("1 connection parameter")
                                       : tr("%1 connection parameters").arg(ofConnection));
    if (!fields.groupSchemas)
        parts.append(tr("tree grouped by schema"));
    return parts.isEmpty() ? tr("The server's defaults") : parts.join(QLatin1String(", "));
}
