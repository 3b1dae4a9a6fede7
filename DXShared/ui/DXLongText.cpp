// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXLongText.h"

#include <QPlainTextEdit>

#include <algorithm>

namespace
{

constexpr qsizetype longestWord = 1000;
constexpr qsizetype longestLine = 16 * 1024;
constexpr qsizetype mostInLongLines = 256 * 1024;
constexpr qsizetype mostInShortLines = 4 * 1024 * 1024;

template<typename Ends>
bool hasRunBeyond(QStringView text, qsizetype longest, Ends &&ends)
{
    qsizetype start = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (ends(text[at]))
            start = at + 1;
        else if (at - start >= longest)
            return true;
    }
    return false;
}

} // namespace

QTextOption::WrapMode DXLongText::wrapMode(QStringView text)
{
    return hasRunBeyond(text, longestWord, [](QChar character) { return character.isSpace(); })
               ? QTextOption::WrapAnywhere
               : QTextOption::WrapAtWordBoundaryOrAnywhere;
}

QString DXLongText::shownPart(const QString &text)
{
    if (text.size() <= mostInLongLines)
        return text;
    const QStringView most = QStringView(text).left(mostInShortLines);
    const bool hasLongLine =
        hasRunBeyond(most, longestLine, [](QChar character) { return character == u'\n'; });
    qsizetype size = std::min(text.size(), hasLongLine ? mostInLongLines : mostInShortLines);
    // Never half of a character.
    if (size < text.size() && text[size - 1].isHighSurrogate())
        --size;
    return text.left(size);
}

void DXLongText::show(QPlainTextEdit &editor, const QString &text)
{
    const QString shown = shownPart(text);
    // The way of wrapping lays out what is there, so nothing may be.
    editor.clear();
    editor.setWordWrapMode(wrapMode(shown));
    editor.setPlainText(shown);
}
