// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/results/DXJsonText.h"

#include <QJsonDocument>

#include <algorithm>
#include <utility>

namespace
{

bool isBlank(QChar character)
{
    return character == u' ' || character == u'\t' || character == u'\n' || character == u'\r';
}

// Where the string that begins at start ends, its closing quote included.
qsizetype endOfString(const QString &text, qsizetype start)
{
    qsizetype at = start + 1;
    while (at < text.size() && text[at] != u'"')
        at += text[at] == u'\\' ? 2 : 1;
    return std::min(at + 1, text.size());
}

void breakLine(QString &result, int depth)
{
    result += u'\n' + QString(qsizetype(2) * depth, u' ');
}

bool isClosedAtOnce(const QString &text, qsizetype at)
{
    while (at < text.size() && isBlank(text[at]))
        ++at;
    return at < text.size() && (text[at] == u'}' || text[at] == u']');
}

} // namespace

// Qt's own documents sort the members and round the numbers, so they only judge the text.
QString DXJsonText::indented(const QString &text)
{
    if (QJsonDocument::fromJson(text.toUtf8()).isNull())
        return {};
    QString result;
    int depth = 0;
    bool isEmpty = false;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar character = text[at];
        if (character == u'"') {
            const qsizetype end = endOfString(text, at);
            result += QStringView(text).mid(at, end - at);
            at = end - 1;
        } else if (character == u'{' || character == u'[') {
            result += character;
            isEmpty = isClosedAtOnce(text, at + 1);
            if (++depth; !isEmpty)
                breakLine(result, depth);
        } else if (character == u'}' || character == u']') {
            if (--depth; !std::exchange(isEmpty, false))
                breakLine(result, depth);
            result += character;
        } else if (character == u',') {
            result += character;
            breakLine(result, depth);
        } else if (character == u':') {
            result += QStringLiteral(": ");
        } else if (!isBlank(character)) {
            result += character;
        }
    }
    return result;
}
