// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/connecting/PostgresConnectionOptions.h"

#include <QRegularExpression>
#include <QStringList>

#include <libpq-fe.h>

#include <memory>
#include <vector>

namespace
{

struct Free
{
    void operator()(PQconninfoOption *options) const { PQconninfoFree(options); }
    void operator()(PGconn *connection) const { PQfinish(connection); }
    void operator()(char *message) const { PQfreemem(message); }
};

// libpq expands a service file only on the way to a connection, and checks each value before the
// first packet: a value that it is sure to refuse stops it right there, with everything expanded
// but the parameter that it stopped at. Another stop tells that one; it lies behind more checks.
constexpr char stopKeyword[] = "ssl_max_protocol_version";
constexpr char laterStopKeyword[] = "target_session_attrs";
constexpr char stopValue[] = "not-to-be-connected";

/// message without what it quotes of the text's password.
QString withoutPassword(QString message, const QString &text)
{
    static const QRegularExpression passwordForm(
        QStringLiteral("://[^/@]*:([^@]*)@|password\\s*=(.*)"),
        QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression quotedForm(QStringLiteral("\"([^\"]*)\""));
    QString secret;
    auto passwords = passwordForm.globalMatch(text);
    while (passwords.hasNext()) {
        const QRegularExpressionMatch password = passwords.next();
        secret += password.captured(1) + password.captured(2);
    }
    auto quotations = quotedForm.globalMatch(QString(message));
    while (quotations.hasNext()) {
        const QRegularExpressionMatch quotation = quotations.next();
        // A single character, such as the "=" that libpq misses, tells nothing.
        if (quotation.capturedLength(1) > 1 && secret.contains(quotation.captured(1)))
            message.replace(quotation.captured(0), QStringLiteral("\"…\""));
    }
    return message;
}

bool refuse(DXError *error, const QString &message)
{
    DXError::report(error,
                    DXError(QStringLiteral("postgres.connectionString"), 0,
                            QStringLiteral("The connection cannot be read: %1").arg(message)));
    return false;
}

void readValues(const PQconninfoOption *option, QMap<QString, QString> &values)
{
    for (; option && option->keyword; ++option) {
        if (option->val)
            values.insert(QString::fromUtf8(option->keyword), QString::fromUtf8(option->val));
    }
}

using Connection = std::unique_ptr<PGconn, Free>;

Connection stoppedAt(const char *keyword, const QMap<QString, QString> &given)
{
    std::vector<QByteArray> bytes;
    for (auto value = given.begin(); value != given.end(); ++value) {
        bytes.push_back(value.key().toUtf8());
        bytes.push_back(value.value().toUtf8());
    }
    std::vector<const char *> keywords;
    std::vector<const char *> values;
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        keywords.push_back(bytes[i].constData());
        values.push_back(bytes[i + 1].constData());
    }
    keywords.insert(keywords.end(), {keyword, nullptr});
    values.insert(values.end(), {stopValue, nullptr});
    return Connection(PQconnectStartParams(keywords.data(), values.data(), 0));
}

/// Whether libpq stopped where it was to.
bool checkStop(const Connection &connection, DXError *error)
{
    const QString message = QString::fromUtf8(PQerrorMessage(connection.get())).trimmed();
    return message.contains(QLatin1String(stopValue)) || refuse(error, message);
}

bool parseText(const QString &text, QMap<QString, QString> &values, DXError *error)
{
    char *message = nullptr;
    const std::unique_ptr<PQconninfoOption, Free> options(
        PQconninfoParse(text.toUtf8().constData(), &message));
    const std::unique_ptr<char, Free> owner(message);
    if (!options)
        return refuse(error, withoutPassword(QString::fromUtf8(message).trimmed(), text));
    readValues(options.get(), values);
    return true;
}

} // namespace

std::optional<PostgresConnectionOptions> PostgresConnectionOptions::parse(const QString &text,
                                                                          DXError *error)
{
    PostgresConnectionOptions options;
    if (!parseText(text, options.m_explicit, error)
        || !options.expand({}, options.m_withoutString, error)
        || !options.expand(options.m_explicit, options.m_effective, error))
        return std::nullopt;
    return options;
}

bool PostgresConnectionOptions::expand(const QMap<QString, QString> &given,
                                       QMap<QString, QString> &expanded, DXError *error)
{
    const Connection connection = stoppedAt(stopKeyword, given);
    const Connection later = stoppedAt(laterStopKeyword, given);
    if (!checkStop(connection, error) || !checkStop(later, error))
        return false;

    const std::unique_ptr<PQconninfoOption, Free> options(PQconninfo(connection.get()));
    readValues(options.get(), expanded);
    for (const auto *option = options.get(); option && option->keyword; ++option) {
        const QString keyword = QString::fromUtf8(option->keyword);
        m_builtIn.insert(keyword, QString::fromUtf8(option->compiled));
        m_variables.insert(keyword, QString::fromUtf8(option->envvar));
    }
    QMap<QString, QString> expandedLater;
    const std::unique_ptr<PQconninfoOption, Free> laterOptions(PQconninfo(later.get()));
    readValues(laterOptions.get(), expandedLater);
    const QString stopped = QString::fromLatin1(stopKeyword);
    expanded.remove(stopped);
    if (expandedLater.contains(stopped))
        expanded.insert(stopped, expandedLater.value(stopped));
    return true;
}

bool PostgresConnectionOptions::isGiven(const QString &keyword) const
{
    return m_explicit.contains(keyword) || !isSameWithoutString(keyword);
}

bool PostgresConnectionOptions::isConfigured(const QString &keyword) const
{
    return value(keyword) != m_builtIn.value(keyword);
}

bool PostgresConnectionOptions::isSameWithoutString(const QString &keyword) const
{
    return value(keyword) == m_withoutString.value(keyword);
}
