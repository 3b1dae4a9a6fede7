// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/connecting/PostgresSessionSettings.h"

#include <QRegularExpression>
#include <QStringList>

namespace
{

bool refuse(DXError *error, const QString &text)
{
    DXError::report(error, DXError(QStringLiteral("postgres.sessionSettings"), 0, text));
    return false;
}

// A reading of its own for each backslash would depend on standard_conforming_strings.
QString literal(QString value)
{
    const bool hasBackslash = value.contains(QLatin1Char('\\'));
    value.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    value.replace(QLatin1Char('\''), QLatin1String("''"));
    return (hasBackslash ? QStringLiteral("E'%1'") : QStringLiteral("'%1'")).arg(value);
}

/// Settings that are lists of names, which SET takes one by one: in one literal they would be a
/// single name with commas in it.
bool isListOfNames(const QString &name)
{
    static const QStringList names{
        QStringLiteral("search_path"), QStringLiteral("temp_tablespaces"),
        QStringLiteral("local_preload_libraries"), QStringLiteral("session_preload_libraries")};
    return names.contains(name);
}

/// The names in list, as the server reads it: folded to lower case unless in double quotes.
QStringList splitNames(const QString &list)
{
    static const QRegularExpression element(
        QStringLiteral("\\G\\s*(?:\"((?:[^\"]|\"\")*)\"|([^,]*))\\s*(?:,|$)"));
    QStringList names;
    auto matches = element.globalMatch(list);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        QString name = match.captured(1).replace(QLatin1String("\"\""), QLatin1String("\""));
        if (!match.hasCaptured(1))
            name = match.captured(2).trimmed().toLower();
        if (!name.isEmpty())
            names.append(name);
    }
    return names;
}

QString listOfLiterals(const QString &list)
{
    QStringList literals;
    for (const QString &name : splitNames(list))
        literals.append(literal(name));
    return literals.isEmpty() ? literal(QString()) : literals.join(QLatin1String(", "));
}

/// The texts of the literals in list, as literal() writes them and listOfLiterals() joins them.
QStringList textsOf(const QString &list)
{
    static const QRegularExpression element(
        QStringLiteral("\\G(E?)'((?:[^'\\\\]|''|\\\\\\\\)*)'(?:, |$)"));
    QStringList texts;
    auto matches = element.globalMatch(list);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        QString text = match.captured(2).replace(QLatin1String("''"), QLatin1String("'"));
        if (match.capturedLength(1) > 0)
            text.replace(QLatin1String("\\\\"), QLatin1String("\\"));
        texts.append(text);
    }
    return texts;
}

/// name as splitNames() reads it back.
QString quotedName(QString name)
{
    static const QRegularExpression plainForm(QStringLiteral("\\A[^\\s\",]+\\z"));
    if (name == name.toLower() && plainForm.match(name).hasMatch())
        return name;
    return QLatin1Char('"') + name.replace(QLatin1Char('"'), QLatin1String("\"\""))
           + QLatin1Char('"');
}

/// The arguments of a command line in which blanks separate and a backslash makes the following
/// character ordinary (PostgreSQL, pg_split_opts).
QStringList splitArguments(const QString &options)
{
    QStringList arguments;
    QString argument;
    for (qsizetype i = 0; i < options.size(); ++i) {
        if (options[i].isSpace()) {
            if (!argument.isEmpty())
                arguments.append(argument);
            argument.clear();
            continue;
        }
        if (options[i] == QLatin1Char('\\') && i + 1 < options.size())
            ++i;
        argument.append(options[i]);
    }
    if (!argument.isEmpty())
        arguments.append(argument);
    return arguments;
}

} // namespace

bool PostgresSessionSettings::add(const QString &name, const QString &value,
                                  QMap<QString, QString> &preferences, DXError *error)
{
    static const QRegularExpression nameForm(
        QStringLiteral("\\A[A-Za-z_][A-Za-z0-9_$]*(\\.[A-Za-z_][A-Za-z0-9_$]*)*\\z"));
    if (!nameForm.match(name).hasMatch())
        return refuse(error, QStringLiteral("\"%1\" is not the name of a setting.").arg(name));
    const QString key = name.toLower();
    if (key == QLatin1String("client_encoding")) {
        const QString encoding = QString(value).remove(QLatin1Char('-')).toLower();
        if (encoding == QLatin1String("utf8") || encoding == QLatin1String("auto"))
            return true;
        return refuse(error, QStringLiteral("Text always travels as UTF-8: leave client_encoding "
                                            "out, whatever the encoding of the database is."));
    }
    if (key == QLatin1String("timezone")) {
        // SET TIME ZONE puts its quotes around the value itself.
        if (value.contains(QLatin1Char('\'')) || value.contains(QLatin1Char('\\')))
            return refuse(error, QStringLiteral("\"%1\" is not a time zone.").arg(value));
        preferences.insert(key, value);
        return true;
    }
    preferences.insert(key, isListOfNames(key) ? listOfLiterals(value) : literal(value));
    return true;
}

QString PostgresSessionSettings::plainValue(const QString &name, const QString &value)
{
    QStringList texts = textsOf(value);
    if (isListOfNames(name.toLower())) {
        for (QString &text : texts)
            text = quotedName(text);
    }
    const QString plain = texts.join(QLatin1String(", "));
    QMap<QString, QString> written;
    add(name, plain, written, nullptr);
    return written.value(name.toLower()) == value ? plain : value;
}

bool PostgresSessionSettings::addOptions(const QString &options,
                                         QMap<QString, QString> &preferences, DXError *error)
{
    const QStringList arguments = splitArguments(options);
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        QString setting = arguments[i];
        if (setting == QLatin1String("-c") && i + 1 < arguments.size())
            setting = arguments[++i];
        else if (setting.startsWith(QLatin1String("-c")) || setting.startsWith(QLatin1String("--")))
            setting.remove(0, 2);
        else
            return refuse(error,
                          QStringLiteral("The option \"%1\" is not supported: write settings "
                                         "as \"-c name=value\".")
                              .arg(setting));
        const qsizetype equals = setting.indexOf(QLatin1Char('='));
        if (equals < 0)
            return refuse(error, QStringLiteral("The setting \"%1\" lacks a value: write "
                                                "\"-c %1=value\".")
                                     .arg(setting));
        const QString name = setting.first(equals).replace(QLatin1Char('-'), QLatin1Char('_'));
        if (!add(name, setting.sliced(equals + 1), preferences, error))
            return false;
    }
    return true;
}
