// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresDatabaseClient.h"

#include "driver/connecting/PostgresConnectionHandle.h"

#include <QSet>

#include <algorithm>

namespace
{

constexpr QChar quote = u'"';

// Words are compared as case folding makes them equal, as QString::compare does.
const QSet<QString> &foldedKeywords()
{
    static const QSet<QString> words = [] {
        QSet<QString> folded;
        const QStringList &keywords = PostgresDatabaseConnectionDetails::keywords();
        folded.reserve(keywords.size());
        for (const QString &keyword : keywords)
            folded.insert(keyword.toCaseFolded());
        return folded;
    }();
    return words;
}

bool requiresEscape(QChar character)
{
    return character == u'-' || (character >= u'A' && character <= u'Z') || character.isSpace();
}

// One name, whatever dots it holds.
QString escapeSingleName(const QString &name)
{
    if (name.isEmpty() || name.front() == quote)
        return name;
    if (std::any_of(name.begin(), name.end(), requiresEscape)
        || foldedKeywords().contains(name.toCaseFolded()))
        return quote + name + quote;
    return name;
}

// The length of the first part of a path: up to a dot that no double quotes enclose.
qsizetype firstPartLength(QStringView path)
{
    const bool startsQuoted = path.startsWith(quote);
    bool quoted = false;
    for (qsizetype at = 0; at < path.size(); ++at) {
        // The two quotes of a doubled one leave the quoted name and enter it again.
        if (startsQuoted && path[at] == quote)
            quoted = !quoted;
        else if (path[at] == u'.' && !quoted)
            return at;
    }
    return path.size();
}

bool isNameCharacter(char32_t character)
{
    // QChar::isLetterOrNumber leaves marks out.
    return character == U'_' || character == U'-' || QChar::isLetterOrNumber(character)
           || QChar::isMark(character);
}

} // namespace

QString PostgresDatabaseClient::escapeTableNameIfRequired(const QString &name)
{
    if (name.startsWith(quote) || name.count(u'.') != 1)
        return escapeSingleName(name);
    const qsizetype dot = name.indexOf(u'.');
    return escapeSingleName(name.first(dot)) + u'.' + escapeSingleName(name.sliced(dot + 1));
}

QString PostgresDatabaseClient::unescapeTableNameIfRequired(const QString &name)
{
    if (name.size() < 2 || !name.startsWith(quote) || !name.endsWith(quote))
        return name;
    return name.sliced(1, name.size() - 2);
}

QString PostgresDatabaseClient::escapeValue(const DXValue &value)
{
    QString null = QStringLiteral("NULL");
    if (value.isNull())
        return null;
    if (value.isBytes()) {
        const QByteArray digits = value.toBytes().toHex().toUpper();
        return QStringLiteral("encode('%1','hex')").arg(QLatin1String(digits));
    }
    QString text = value.toText();
    if (value.isNumber()) {
        // NaN and the infinities have no bare form in SQL.
        const bool isFinite = text.back() >= u'0' && text.back() <= u'9';
        return isFinite ? text : u'\'' + text + u'\'';
    }
    if (text.compare(null, Qt::CaseInsensitive) == 0)
        return null;
    return u'\'' + text.replace(u'\'', QLatin1String("''")) + u'\'';
}

QString PostgresDatabaseClient::escapeTablePaths(const QString &tablePath) const
{
    QString escaped;
    for (QStringView rest(tablePath);;) {
        const qsizetype length = firstPartLength(rest);
        escaped += escapeSingleName(rest.first(length).toString());
        if (length == rest.size())
            return escaped;
        escaped += u'.';
        rest = rest.sliced(length + 1);
    }
}

QString PostgresDatabaseClient::escapeTablePaths(const QStringList &tablePath)
{
    QStringList escaped;
    for (const QString &part : tablePath)
        escaped += part.contains(u'.') && part.front() != quote ? quote + part + quote
                                                                : escapeSingleName(part);
    return escaped.join(u'.');
}

DXValue PostgresDatabaseClient::databaseProviderEscape(const DXValue &value) const
{
    if (!value.isText())
        return value;
    const QByteArray text = value.toText().toUtf8();
    if (text.isEmpty() || !isConnected())
        return value;
    // libpq would end the text here; the whole of it is refused when it is sent.
    if (text.contains('\0'))
        return escapeValue(value);
    const std::unique_ptr<char, decltype(&PQfreemem)> literal(
        PQescapeLiteral(m_internalConnection->get(), text.constData(),
                        static_cast<size_t>(text.size())),
        PQfreemem);
    return literal ? DXValue(QString::fromUtf8(literal.get())) : value;
}

std::optional<QStringList> PostgresDatabaseClient::splitPostgresArray(const QString &array)
{
    if (!array.startsWith(u'{') || !array.endsWith(u'}'))
        return std::nullopt;
    QStringList elements = array.sliced(1, array.size() - 2).split(u',');
    for (QString &element : elements) {
        if (element.size() < 2 || !element.startsWith(quote) || !element.endsWith(quote))
            continue;
        element = unescapeTableNameIfRequired(element);
        element.replace(QLatin1String("\\\""), QString(quote));
    }
    return elements;
}

PostgresDatabaseClient::SchemaAndObject PostgresDatabaseClient::splitString(const QString &name)
{
    QString bare = name;
    bare.remove(u'\'').remove(quote);
    const qsizetype dot = bare.indexOf(u'.');
    if (dot < 0)
        return {.schema = {}, .object = bare};
    return {.schema = bare.first(dot), .object = bare.sliced(dot + 1)};
}

bool PostgresDatabaseClient::isTableNameValid(const QString &name)
{
    // By code points: a letter beyond the basic plane is two QChars, neither of them a letter.
    const QList<uint> characters = name.toUcs4();
    return std::all_of(characters.begin(), characters.end(), isNameCharacter);
}
