// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/DXSQLBrackets.h"

#include "ui/editor/DXSQLStyler.h"

#include <algorithm>

namespace
{

constexpr int linesToSearch = 4000;

} // namespace

struct DXSQLBrackets::Bracket
{
    qsizetype column = 0;
    char16_t sign = 0;

    bool opens() const { return sign == u'(' || sign == u'['; }
    bool isRound() const { return sign == u'(' || sign == u')'; }
};

DXSQLBrackets::DXSQLBrackets(const SQLMetadataTokenizerOptions &options, DXSQLStyler &styler)
    : m_options(options)
    , m_styler(styler)
{ }

QList<DXSQLBrackets::Bracket> DXSQLBrackets::bracketsOf(int line) const
{
    QList<Bracket> brackets;
    const QString text = m_styler.lineText(line);
    SQLTokenizer tokenizer(m_options, text, m_styler.lines().before(line).lexical);
    while (const auto token = tokenizer.next()) {
        const char16_t sign = text[token->range.location].unicode();
        if (token->kind == SQLToken::Kind::Punctuation
            && QStringView(u"()[]").contains(QChar(sign)))
            brackets += {token->range.location, sign};
    }
    return brackets;
}

std::optional<DXSQLBrackets::Pair> DXSQLBrackets::at(Place caret, int lineCount) const
{
    QList<Bracket> brackets = bracketsOf(caret.line);
    const auto standsAt = [&brackets](qsizetype column) {
        return std::find_if(brackets.begin(), brackets.end(),
                            [column](const Bracket &bracket) { return bracket.column == column; });
    };
    auto found = standsAt(caret.column - 1);
    if (found == brackets.end())
        found = standsAt(caret.column);
    if (found == brackets.end())
        return std::nullopt;
    const Bracket bracket = *found;
    Pair pair{{caret.line, bracket.column}, std::nullopt};
    const int step = bracket.opens() ? 1 : -1;
    qsizetype index = found - brackets.begin() + step;
    int depth = 0;
    for (int line = caret.line; std::abs(line - caret.line) < linesToSearch;) {
        for (; index >= 0 && index < brackets.size(); index += step) {
            const Bracket &next = brackets[index];
            if (next.isRound() != bracket.isRound())
                continue;
            if (next.opens() == bracket.opens()) {
                ++depth;
            } else if (--depth < 0) {
                pair.other = {line, next.column};
                return pair;
            }
        }
        line += step;
        if (line < 0 || line >= lineCount)
            return pair;
        brackets = bracketsOf(line);
        index = step > 0 ? 0 : brackets.size() - 1;
    }
    return std::nullopt;
}

void DXSQLBrackets::show(QsciScintillaBase &view) const
{
    using Base = QsciScintillaBase;
    const auto lineStart = [&view](long line) {
        return static_cast<unsigned long>(view.SendScintilla(Base::SCI_POSITIONFROMLINE, line));
    };
    const auto byteOf = [&](Place place) {
        return view.SendScintilla(Base::SCI_POSITIONRELATIVECODEUNITS, lineStart(place.line),
                                  long(place.column));
    };
    const long caret = view.SendScintilla(Base::SCI_GETCURRENTPOS);
    const long line = view.SendScintilla(Base::SCI_LINEFROMPOSITION, caret);
    const long column = view.SendScintilla(Base::SCI_COUNTCODEUNITS, lineStart(line), caret);
    const auto pair = at({static_cast<int>(line), column},
                         static_cast<int>(view.SendScintilla(Base::SCI_GETLINECOUNT)));
    if (!pair)
        view.SendScintilla(Base::SCI_BRACEHIGHLIGHT, ~0UL, -1L);
    else if (!pair->other)
        view.SendScintilla(Base::SCI_BRACEBADLIGHT, byteOf(pair->bracket));
    else
        view.SendScintilla(Base::SCI_BRACEHIGHLIGHT,
                           static_cast<unsigned long>(byteOf(pair->bracket)), byteOf(*pair->other));
}
