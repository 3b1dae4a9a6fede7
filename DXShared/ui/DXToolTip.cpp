// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXToolTip.h"

namespace
{

constexpr qsizetype mostCharacters = 2000;
constexpr qsizetype longestWord = 60;

// Markup is wrapped between words only; these may break between any of their characters here.
QString withBreaks(const QString &text)
{
    QString result;
    qsizetype word = 0;
    for (const QChar character : text) {
        if (word >= longestWord && !character.isLowSurrogate()) {
            result += QChar(0x200B);
            word = 0;
        }
        word = character.isSpace() ? 0 : word + 1;
        result += character;
    }
    return result;
}

} // namespace

QString DXToolTip::plain(const QString &text)
{
    if (text.isEmpty())
        return {};
    QString shown = text.left(mostCharacters);
    if (shown.back().isHighSurrogate())
        shown.chop(1);
    if (shown.size() < text.size())
        shown += QChar(0x2026);
    return QStringLiteral("<qt><div style=\"white-space:pre-wrap\">%1</div></qt>")
        .arg(withBreaks(shown).toHtmlEscaped());
}
