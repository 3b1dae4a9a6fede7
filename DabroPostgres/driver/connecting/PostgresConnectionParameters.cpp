// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/connecting/PostgresConnectionParameters.h"

#include <QHostAddress>

#include <libpq-fe.h>

#include <memory>

namespace
{

using namespace PostgresConnectionParameters;

QMap<QString, Place> libpqsParameters()
{
    QMap<QString, Place> places;
    const std::unique_ptr<PQconninfoOption, decltype(&PQconninfoFree)> options(
        PQconninfoParse("", nullptr), &PQconninfoFree);
    for (const auto *option = options.get(); option && option->keyword; ++option) {
        // It marks secrets, and what is no matter of a user's ("replication").
        const bool isOrdinary = QByteArrayView(option->dispchar).isEmpty();
        places.insert(QString::fromLatin1(option->keyword),
                      isOrdinary ? Place::Parameter : Place::Nowhere);
    }
    return places;
}

const QMap<QString, Place> &places()
{
    static const QMap<QString, Place> places = [] {
        QMap<QString, Place> all = libpqsParameters();
        for (const char *const name :
             {"service", "servicefile", "host", "port", "user", "password", "dbname", "sslmode",
              "sslcompression", "sslcert", "sslkey", "sslrootcert", "sslcrl"})
            all.insert(QString::fromLatin1(name), Place::Field);
        for (const char *const name :
             {"application_name", "fallback_application_name", "options", "client_encoding"})
            all.insert(QString::fromLatin1(name), Place::Session);
        return all;
    }();
    return places;
}

bool refuse(DXError *error, const QString &text)
{
    DXError::report(error, DXError(QStringLiteral("postgres.connectionParameters"), 0, text));
    return false;
}

/// What libpq says on the way to a connection that ends before the first packet, at an address that
/// is none.
QString sentenceOn(const QByteArray &name, const QByteArray &value)
{
    const char *const keywords[] = {"hostaddr", name.constData(), nullptr};
    const char *const values[] = {"-", value.constData(), nullptr};
    const std::unique_ptr<PGconn, decltype(&PQfinish)> connection(
        PQconnectStartParams(keywords, values, 0), &PQfinish);
    return QString::fromUtf8(PQerrorMessage(connection.get())).trimmed();
}

/// Parameters whose value libpq reads only once it connects, or has.
bool isWholeNumber(const QString &name)
{
    return name == QLatin1String("connect_timeout") || name == QLatin1String("tcp_user_timeout")
           || name.startsWith(QLatin1String("keepalives"));
}

bool isTaken(const QString &name, const QString &value, DXError *error)
{
    if (name == QLatin1String("hostaddr"))
        return !QHostAddress(value).isNull()
               || refuse(error, QStringLiteral("\"%1\" is not the address of a host: write "
                                               "\"hostaddr\" in numbers.")
                                    .arg(value));
    bool isNumber = false;
    value.toInt(&isNumber);
    if (isWholeNumber(name) && !isNumber)
        return refuse(error, QStringLiteral("The value of \"%1\" must be a whole number, not "
                                            "\"%2\".")
                                 .arg(name, value));
    const QString sentence = sentenceOn(name.toLatin1(), value.toUtf8());
    return sentence == sentenceOn("hostaddr", "-") || refuse(error, sentence);
}

} // namespace

PostgresConnectionParameters::Place PostgresConnectionParameters::placeOf(const QString &name)
{
    return places().value(name, Place::None);
}

QStringList PostgresConnectionParameters::names()
{
    return places().keys(Place::Parameter);
}

bool PostgresConnectionParameters::add(const QString &name, const QString &value,
                                       QMap<QString, QString> &parameters, DXError *error)
{
    switch (placeOf(name)) {
    case Place::None:
        return refuse(error, QStringLiteral("libpq has no connection parameter \"%1\".").arg(name));
    case Place::Field:
        return refuse(error, QStringLiteral("\"%1\" is set in the fields of the connection, not "
                                            "here.")
                                 .arg(name));
    case Place::Session:
        return refuse(error, QStringLiteral("\"%1\" belongs to the session: set it among the "
                                            "session parameters.")
                                 .arg(name));
    case Place::Nowhere:
        return refuse(error,
                      QStringLiteral("A connection cannot carry the parameter \"%1\".").arg(name));
    case Place::Parameter:
        break;
    }
    if (!isTaken(name, value, error))
        return false;
    parameters.insert(name, value);
    return true;
}

QString PostgresConnectionParameters::entry(const QString &name, const QString &value)
{
    QString escaped = value;
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    escaped.replace(QLatin1Char('\''), QLatin1String("\\'"));
    return QStringLiteral("%1='%2'").arg(name, escaped);
}
