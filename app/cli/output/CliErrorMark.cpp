// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/output/CliErrorMark.h"

#include "cli/CliText.h"

#include <QStringList>

#include <algorithm>

namespace
{

// Columns of a line that are shown before and behind the beginning of what failed.
constexpr qsizetype columnsBefore = 60;
constexpr qsizetype columnsBehind = 100;

// The beginning of text as it shows, with its tabs as blanks.
QString shown(QStringView text)
{
    return CliText::printableLines(text);
}

// How much of the beginning of text fits into that many columns.
qsizetype endOfColumns(QStringView text, qsizetype columns)
{
    qsizetype end = 0;
    while (end < text.size()) {
        const qsizetype units = text[end].isHighSurrogate() && end + 1 < text.size() ? 2 : 1;
        columns -= CliText::width(text.sliced(end, units));
        if (columns < 0)
            break;
        end += units;
    }
    return end;
}

QString markedLine(const QString &line, DXTextRange range, qsizetype number)
{
    QString text = shown(line);
    qsizetype start = CliText::width(shown(QStringView(line).first(range.location)));
    const qsizetype end = CliText::width(shown(QStringView(line).first(range.end())));
    qsizetype length = std::max<qsizetype>(end - start, 1);
    if (start > columnsBefore) {
        const qsizetype cut = endOfColumns(text, start - columnsBefore);
        start -= CliText::width(QStringView(text).first(cut));
        text = QStringLiteral("...") + text.sliced(cut);
        start += 3;
    }
    if (const qsizetype last = endOfColumns(text, start + columnsBehind); last < text.size()) {
        text = text.first(last) + QStringLiteral("...");
        length = std::min(length, columnsBehind);
    }
    const QString prefix = QStringLiteral("Line %1: ").arg(number);
    return prefix + text + u'\n' + QString(prefix.size() + start, u' ') + QString(length, u'^');
}

} // namespace

QString CliErrorMark::render(const QString &text, const QList<DXTextRange> &ranges)
{
    QStringList lines;
    for (const DXTextRange &range : ranges) {
        if (range.location < 0 || range.location > text.size() || range.length < 0)
            continue;
        const QStringView before = QStringView(text).first(range.location);
        const qsizetype lineStart = before.lastIndexOf(u'\n') + 1;
        const qsizetype lineFeed = text.indexOf(u'\n', range.location);
        const QString line =
            text.sliced(lineStart, (lineFeed < 0 ? text.size() : lineFeed) - lineStart);
        const qsizetype location = range.location - lineStart;
        lines.append(markedLine(line, {location, std::min(range.length, line.size() - location)},
                                before.count(u'\n') + 1));
    }
    return lines.join(u'\n');
}
