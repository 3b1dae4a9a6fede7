// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresDatabaseClient.h"

#include "driver/PostgresDatabaseResultSet.h"

#include <limits>
#include <optional>

namespace
{

bool endsFailingText(QChar character)
{
    return character.isSpace() || character == QLatin1Char(';');
}

// Where line number `line`, counted from 1, begins; 0 when the text has fewer lines.
qsizetype startOfLine(const QString &text, qint64 line)
{
    qsizetype start = 0;
    for (qint64 at = 1; at < line; ++at) {
        const qsizetype lineFeed = text.indexOf(QLatin1Char('\n'), start);
        if (lineFeed < 0)
            return 0;
        start = lineFeed + 1;
    }
    return start;
}

// libpq shows the line after "LINE n: " and puts a caret under the failing character in the next
// line.
std::optional<qsizetype> positionFromMessage(const QString &message, const QString &query)
{
    const QStringList lines = QString(message).remove(QLatin1Char('\r')).split(QLatin1Char('\n'));
    for (qsizetype index = 0; index < lines.size(); ++index) {
        const QString &line = lines[index];
        const qsizetype colon = line.indexOf(QLatin1Char(':'));
        if (!line.startsWith(QLatin1String("LINE ")) || colon < 0)
            continue;
        const qint64 lineNumber = DXValue::leadingInteger(QStringView(line).sliced(5).toUtf8());
        if (lineNumber <= 0 || lineNumber > std::numeric_limits<int>::max()
            || index + 1 == lines.size())
            return std::nullopt;
        const qsizetype caret = lines[index + 1].indexOf(QLatin1Char('^'));
        if (caret < 0)
            return std::nullopt;
        return startOfLine(query, lineNumber) + caret - colon - 2;
    }
    return std::nullopt;
}

// The server counts characters where QString counts UTF-16 units.
std::optional<qsizetype> positionFromServer(const DXError &error, const QString &query)
{
    const qint64 characters =
        error.details().value(PostgresDatabaseResultSet::statementPositionKey()).toLongLong();
    if (characters <= 0)
        return std::nullopt;
    qsizetype position = 0;
    for (qint64 passed = 1; passed < characters && position < query.size(); ++passed)
        position += query[position].isHighSurrogate() ? 2 : 1;
    return position;
}

} // namespace

// libpq shortens long lines around the failing place and counts the columns of wide characters, so
// the server's own position is preferred where the error still has it. An answer of the server
// without one failed inside a function: the "LINE" it quotes is one of the function's own query.
DXError PostgresDatabaseClient::processErrorDetails(const DXError &error, const QString &query,
                                                    qsizetype offset)
{
    std::optional<qsizetype> position = positionFromServer(error, query);
    if (!position && !error.details().contains(PostgresDatabaseResultSet::sqlStateKey()))
        position = positionFromMessage(error.description(), query);
    if (!position || *position < 0 || *position >= query.size())
        return error;
    qsizetype end = *position;
    while (end < query.size() && !endsFailingText(query[end]))
        ++end;
    const DXTextRange range{*position + offset, end - *position};
    return error.withDetail(DXError::queryErrorRangesKey(),
                            QVariant::fromValue(QList<DXTextRange>{range}));
}
