// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXFieldText.h"

#include <QString>

#include <algorithm>

namespace
{

bool isPlain(QByteArrayView text)
{
    return std::all_of(text.begin(), text.end(), [](char character) {
        return character >= 0x20 && character < 0x7F && character != '"' && character != '\\';
    });
}

void appendEscape(QString &line, QChar character)
{
    switch (character.unicode()) {
    case '"':
    case '\\':
        line += u'\\';
        line += character;
        return;
    case '\n':
        line += QLatin1String("\\n");
        return;
    case '\r':
        line += QLatin1String("\\r");
        return;
    case '\t':
        line += QLatin1String("\\t");
        return;
    default:
        line += QString::asprintf("\\u%04x", static_cast<unsigned>(character.unicode()));
    }
}

bool needsEscape(QChar character)
{
    switch (character.category()) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return character == u'"' || character == u'\\';
    }
}

} // namespace

void DXFieldText::appendCsv(QByteArray &line, QByteArrayView text)
{
    const auto isSpecial = [](char character) {
        return character == ',' || character == '"' || character == '\n' || character == '\r';
    };
    if (!text.isEmpty() && std::none_of(text.begin(), text.end(), isSpecial)) {
        line.append(text);
        return;
    }
    line += '"';
    for (const char character : text) {
        if (character == '"')
            line += '"';
        line += character;
    }
    line += '"';
}

void DXFieldText::appendTsv(QByteArray &line, QByteArrayView text)
{
    for (const char character : text) {
        switch (character) {
        case '\t':
            line += "\\t";
            break;
        case '\n':
            line += "\\n";
            break;
        case '\r':
            line += "\\r";
            break;
        case '\\':
            line += "\\\\";
            break;
        default:
            line += character;
        }
    }
}

void DXFieldText::appendJson(QByteArray &line, QByteArrayView text)
{
    line += '"';
    if (isPlain(text)) {
        line += text;
    } else {
        QString escaped;
        for (const QChar character : QString::fromUtf8(text)) {
            if (needsEscape(character))
                appendEscape(escaped, character);
            else
                escaped += character;
        }
        line += escaped.toUtf8();
    }
    line += '"';
}
