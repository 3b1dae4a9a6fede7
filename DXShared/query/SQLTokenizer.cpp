// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "query/SQLTokenizer.h"

#include <algorithm>
#include <array>
#include <utility>

namespace
{

// What a character may be part of, as bits.
enum CharacterSet : quint8 {
    BlankSet = 1,
    WordStartSet = 2,
    WordSet = 4,
    DigitSet = 8,
    HexDigitSet = 16,
    OperatorSet = 32,
    // Operators that hold one of these may end with a sign.
    SpecialSet = 64,
    PunctuationSet = 128,
};

constexpr std::array<quint8, 128> characterSets = [] {
    std::array<quint8, 128> sets{};
    const auto add = [&sets](const char *characters, int set) {
        for (; *characters != '\0'; ++characters)
            sets[static_cast<unsigned char>(*characters)] |= static_cast<quint8>(set);
    };
    add(" \t\n\r\f\v", BlankSet);
    add("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_", WordStartSet | WordSet);
    add("0123456789", WordSet | DigitSet | HexDigitSet);
    add("abcdefABCDEF", HexDigitSet);
    add("$", WordSet);
    add("~!@#^&|`?%", OperatorSet | SpecialSet);
    add("+-*/<>=", OperatorSet);
    add("()[],;", PunctuationSet);
    return sets;
}();

inline bool isIn(char16_t c, int sets)
{
    // Every character beyond ASCII is a letter.
    return c < characterSets.size() ? (characterSets[c] & sets) != 0
                                    : (sets & (WordStartSet | WordSet)) != 0;
}

inline bool isLineBreak(char16_t c)
{
    return c == u'\n' || c == u'\r';
}

inline const char16_t *skip(const char16_t *at, const char16_t *end, int sets)
{
    while (at != end && isIn(*at, sets))
        ++at;
    return at;
}

// The end of the digits at `at`, which single underscores may part.
const char16_t *skipDigits(const char16_t *at, const char16_t *end, int digits)
{
    for (at = skip(at, end, digits); end - at > 1 && *at == u'_' && isIn(at[1], digits);)
        at = skip(at + 1, end, digits);
    return at;
}

bool isString(SQLToken::Kind kind)
{
    return kind >= SQLToken::Kind::String && kind <= SQLToken::Kind::HexString;
}

SQLToken::Kind kindOfPrefix(char16_t letter)
{
    switch (letter | 0x20) {
    case u'e':
        return SQLToken::Kind::EscapeString;
    case u'b':
        return SQLToken::Kind::BitString;
    case u'x':
        return SQLToken::Kind::HexString;
    case u'n':
        return SQLToken::Kind::NationalString;
    default:
        return SQLToken::Kind::Word;
    }
}

// The digits of 0x…, 0o… and 0b…, or 0 for another letter.
int digitsOfBase(char16_t letter)
{
    switch (letter | 0x20) {
    case u'x':
        return HexDigitSet;
    case u'o':
    case u'b':
        return DigitSet;
    default:
        return 0;
    }
}

inline bool isSign(char16_t c)
{
    return c == u'+' || c == u'-';
}

} // namespace

SQLTokenizer::SQLTokenizer(const SQLMetadataTokenizerOptions &options, QStringView text,
                           const State &state)
    : m_options(options)
    , m_begin(text.utf16())
    , m_end(m_begin + text.size())
    , m_at(m_begin)
    , m_signsEnd(m_begin)
    , m_state(state)
{ }

QString SQLTokenizer::firstWord(const SQLMetadataTokenizerOptions &options, const QString &text)
{
    SQLTokenizer tokenizer(options, text, {});
    while (const auto token = tokenizer.next()) {
        if (!token->isBlankOrComment())
            return text.sliced(token->range.location, token->range.length);
    }
    return {};
}

std::optional<SQLToken> SQLTokenizer::next()
{
    if (m_at == m_end)
        return std::nullopt;
    const char16_t *const from = m_at;
    m_continued = m_state.open;
    const Kind kind = m_state.open ? resume() : scan();
    if (!m_state.open) {
        if (isString(kind)) {
            m_state.kind = kind;
            m_lineBroken = false;
        } else if (kind != Kind::Blank && kind != Kind::LineComment) {
            m_state.kind = Kind::Blank;
        }
    }
    return SQLToken{kind, m_continued, m_state.open, {from - m_begin, m_at - from}};
}

SQLTokenizer::Kind SQLTokenizer::scan()
{
    const char16_t c = *m_at;
    if (isIn(c, WordStartSet))
        return scanWord();
    if (isIn(c, BlankSet))
        return scanBlank();
    if (isIn(c, PunctuationSet))
        return take(1, Kind::Punctuation);
    if (isIn(c, DigitSet))
        return scanNumber();
    if (isIn(c, OperatorSet))
        return scanOperator();
    switch (c) {
    case u'\'':
        return scanQuote();
    case u'"':
        return scanQuoted(Kind::QuotedIdentifier, 1);
    case u'$':
        return scanDollar();
    case u'.':
        return scanDot();
    case u':':
        return has(1, u':') || has(1, u'=') ? take(2, Kind::Operator) : take(1, Kind::Punctuation);
    default:
        return take(1, Kind::Other);
    }
}

SQLTokenizer::Kind SQLTokenizer::resume()
{
    const State before = std::exchange(m_state, {});
    if (before.kind == Kind::BlockComment)
        return scanBlockComment(before.commentDepth, 0);
    if (before.kind == Kind::DollarString)
        return scanDollarBody(before.dollarTag, 0);
    return scanQuoted(before.kind, 0);
}

SQLTokenizer::Kind SQLTokenizer::take(qsizetype count, Kind kind)
{
    m_at += count;
    return kind;
}

SQLTokenizer::Kind SQLTokenizer::leaveOpen(Kind kind)
{
    m_at = m_end;
    m_state.kind = kind;
    m_state.open = true;
    return kind;
}

bool SQLTokenizer::hasIn(qsizetype ahead, int sets) const
{
    return m_end - m_at > ahead && isIn(m_at[ahead], sets);
}

SQLTokenizer::Kind SQLTokenizer::scanBlank()
{
    const char16_t *const from = m_at;
    m_at = skip(m_at, m_end, BlankSet);
    if (m_state.kind != Kind::Blank)
        m_lineBroken = m_lineBroken || std::any_of(from, m_at, isLineBreak);
    return Kind::Blank;
}

SQLTokenizer::Kind SQLTokenizer::scanWord()
{
    if (has(1, u'\'')) {
        if (const Kind kind = kindOfPrefix(*m_at); kind != Kind::Word)
            return scanQuoted(kind, 2);
    } else if (has(1, u'&') && (*m_at | 0x20) == u'u') {
        if (has(2, u'\''))
            return scanQuoted(Kind::UnicodeString, 3);
        if (has(2, u'"'))
            return scanQuoted(Kind::UnicodeIdentifier, 3);
    }
    m_at = skip(m_at, m_end, WordSet);
    return Kind::Word;
}

SQLTokenizer::Kind SQLTokenizer::scanNumber()
{
    if (*m_at == u'0' && m_end - m_at > 2) {
        const int digits = digitsOfBase(m_at[1]);
        const char16_t *const first = m_at + (m_at[2] == u'_' ? 3 : 2);
        if (digits != 0 && first != m_end && isIn(*first, digits)) {
            m_at = skipDigits(first, m_end, digits);
            return Kind::Integer;
        }
    }
    Kind kind = Kind::Integer;
    m_at = skipDigits(m_at, m_end, DigitSet);
    // Two points are a range: 1..10.
    if (has(0, u'.') && !has(1, u'.')) {
        m_at = skipDigits(m_at + 1, m_end, DigitSet);
        kind = Kind::Decimal;
    }
    if (has(0, u'e') || has(0, u'E')) {
        const qsizetype sign = has(1, u'+') || has(1, u'-') ? 1 : 0;
        if (hasIn(1 + sign, DigitSet)) {
            m_at = skipDigits(m_at + 1 + sign, m_end, DigitSet);
            kind = Kind::Decimal;
        }
    }
    return kind;
}

SQLTokenizer::Kind SQLTokenizer::scanQuote()
{
    if (!isString(m_state.kind) || !m_lineBroken)
        return scanQuoted(Kind::String, 1);
    m_continued = true;
    return scanQuoted(m_state.kind, 1);
}

// Reads on behind `opening` characters up to the quote that closes.
SQLTokenizer::Kind SQLTokenizer::scanQuoted(Kind kind, qsizetype opening)
{
    const bool isIdentifier = kind == Kind::QuotedIdentifier || kind == Kind::UnicodeIdentifier;
    const char16_t quote = isIdentifier ? u'"' : u'\'';
    const bool doubles = kind != Kind::BitString && kind != Kind::HexString;
    const char16_t escape = kind == Kind::EscapeString ? u'\\' : quote;
    for (const char16_t *at = m_at + opening; at < m_end; ++at) {
        if (*at == quote) {
            if (!doubles || at + 1 == m_end || at[1] != quote) {
                m_at = at + 1;
                return kind;
            }
            ++at;
        } else if (*at == escape && at + 1 != m_end) {
            ++at;
        }
    }
    return leaveOpen(kind);
}

SQLTokenizer::Kind SQLTokenizer::scanDollar()
{
    if (hasIn(1, DigitSet)) {
        m_at = skip(m_at + 1, m_end, DigitSet);
        return Kind::Parameter;
    }
    const char16_t *tagEnd = m_at + 1;
    while (tagEnd != m_end && *tagEnd != u'$' && isIn(*tagEnd, WordSet))
        ++tagEnd;
    if (tagEnd == m_end || *tagEnd != u'$')
        return take(1, Kind::Other);
    const QStringView tag(m_at + 1, tagEnd);
    return scanDollarBody(tag, tag.size() + 2);
}

// Reads on behind `opening` characters up to the second dollar sign of $tag$. A tag holds no dollar
// sign, so what was compared in vain is never looked at again.
SQLTokenizer::Kind SQLTokenizer::scanDollarBody(QStringView tag, qsizetype opening)
{
    const QStringView text(m_at, m_end);
    for (qsizetype dollar = text.indexOf(u'$', opening); dollar >= 0;
         dollar = text.indexOf(u'$', dollar + 1)) {
        const QStringView rest = text.sliced(dollar + 1);
        if (rest.size() > tag.size() && rest[tag.size()] == u'$' && rest.startsWith(tag))
            return take(dollar + tag.size() + 2, Kind::DollarString);
    }
    m_state.dollarTag = tag.toString();
    return leaveOpen(Kind::DollarString);
}

SQLTokenizer::Kind SQLTokenizer::scanDot()
{
    if (has(1, u'.'))
        return take(2, Kind::Operator);
    return hasIn(1, DigitSet) ? scanNumber() : take(1, Kind::Punctuation);
}

SQLTokenizer::Kind SQLTokenizer::scanLineComment()
{
    m_at = std::find_if(m_at, m_end, isLineBreak);
    return Kind::LineComment;
}

// Reads on behind `opening` characters until `depth` comments are closed.
SQLTokenizer::Kind SQLTokenizer::scanBlockComment(quint32 depth, qsizetype opening)
{
    const bool nests = m_options.allowNestedMultilineComments();
    for (const char16_t *at = m_at + opening; m_end - at > 1; ++at) {
        if (*at == u'*' && at[1] == u'/') {
            ++at;
            if (--depth == 0) {
                m_at = at + 1;
                return Kind::BlockComment;
            }
        } else if (nests && *at == u'/' && at[1] == u'*') {
            ++at;
            ++depth;
        }
    }
    m_state.commentDepth = depth;
    return leaveOpen(Kind::BlockComment);
}

bool SQLTokenizer::beginsLineComment(const char16_t *at) const
{
    return (*at == u'-' && m_end - at > 1 && at[1] == u'-')
           || (*at == u'#' && m_options.hashMarksAreComments());
}

bool SQLTokenizer::beginsBlockComment(const char16_t *at) const
{
    return *at == u'/' && m_end - at > 1 && at[1] == u'*';
}

// The end of the variable at `at`, or `at` where none begins.
const char16_t *SQLTokenizer::endOfVariable(const char16_t *at) const
{
    if (!m_options.includeMSSQLVariables() || *at != u'@')
        return at;
    const char16_t *const name = m_end - at > 1 && at[1] == u'@' ? at + 2 : at + 1;
    return name != m_end && isIn(*name, WordStartSet) ? skip(name, m_end, WordSet) : at;
}

SQLTokenizer::Kind SQLTokenizer::scanOperator()
{
    if (m_at < m_signsEnd)
        return take(1, Kind::Operator);
    if (beginsLineComment(m_at))
        return scanLineComment();
    if (beginsBlockComment(m_at))
        return scanBlockComment(1, 2);
    if (const char16_t *const end = endOfVariable(m_at); end != m_at)
        return take(end - m_at, Kind::Variable);

    // Comments and variables end an operator. At its end, signs stay a part of it only if it holds
    // a character that no operator of the standard has, so that a=-1 reads as it was meant.
    const char16_t *end = m_at;
    bool isSpecial = false;
    do {
        isSpecial = isSpecial || isIn(*end, SpecialSet);
        ++end;
    } while (end != m_end && isIn(*end, OperatorSet) && !beginsLineComment(end)
             && !beginsBlockComment(end) && endOfVariable(end) == end);
    m_signsEnd = end;
    if (!isSpecial) {
        while (end - m_at > 1 && isSign(end[-1]))
            --end;
    }
    return take(end - m_at, Kind::Operator);
}
