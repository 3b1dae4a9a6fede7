// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "query/SQLMetadataTokenizerOptions.h"
#include "query/SQLToken.h"

#include <QStringView>

#include <optional>

/// Cuts SQL text into tokens by the lexical rules of the standard as PostgreSQL extends them
/// (nested comments, dollar quotes, E'' and U&'' strings, its rule for + and - at the end of an
/// operator; strings without a prefix take a backslash as it is). It takes any text: every
/// character belongs to exactly one token, what never ends reaches to the end of the text. Time is
/// linear in the text. An object belongs to one thread. [any]
class DXSHARED_EXPORT SQLTokenizer final
{
public:
    /// What a text leaves open for the text behind it. A highlighter keeps one per line and stops
    /// when a line's stays as it was.
    struct State
    {
        /// The token that is open, or else the string that a quote on the next line goes on with.
        SQLToken::Kind kind = SQLToken::Kind::Blank;
        bool open = false;
        /// Comments open inside each other; 0 unless a block comment is open.
        quint32 commentDepth = 0;
        /// What stands between the dollar signs; empty unless a dollar string is open.
        QString dollarTag;

        friend bool operator==(const State &, const State &) = default;
    };

    /// Reads text, which has to live as long as the tokenizer; state is what the text before it
    /// left, {} where none is before it. A text in parts gives the tokens of the whole if every
    /// part but the last ends with a line break, save that a token over several parts comes in as
    /// many pieces.
    SQLTokenizer(const SQLMetadataTokenizerOptions &options, QStringView text, const State &state);

    /// The next token, its range counted from the start of the text; none at the end.
    std::optional<SQLToken> next();
    /// What stands open behind the last token that next() gave.
    const State &state() const { return m_state; }

    /// The first token of text that is neither blank nor comment, as it is written; null for none.
    static QString firstWord(const SQLMetadataTokenizerOptions &options, const QString &text);

private:
    using Kind = SQLToken::Kind;

    Kind scan();
    Kind resume();
    Kind scanBlank();
    Kind scanWord();
    Kind scanNumber();
    Kind scanQuote();
    Kind scanDollar();
    Kind scanDot();
    Kind scanOperator();
    Kind scanLineComment();
    Kind scanBlockComment(quint32 depth, qsizetype opening);
    Kind scanQuoted(Kind kind, qsizetype opening);
    Kind scanDollarBody(QStringView tag, qsizetype opening);
    Kind take(qsizetype count, Kind kind);
    Kind leaveOpen(Kind kind);

    bool has(qsizetype ahead, char16_t c) const { return m_end - m_at > ahead && m_at[ahead] == c; }
    bool hasIn(qsizetype ahead, int sets) const;
    bool beginsLineComment(const char16_t *at) const;
    bool beginsBlockComment(const char16_t *at) const;
    const char16_t *endOfVariable(const char16_t *at) const;

    const SQLMetadataTokenizerOptions m_options;
    const char16_t *const m_begin;
    const char16_t *const m_end;
    const char16_t *m_at;
    // Up to here stand signs that the operator before them shed, each an operator of its own.
    const char16_t *m_signsEnd;
    // Whether a line break stands between the string that ended last and here.
    bool m_lineBroken = true;
    // What the token being read says in continuesBefore.
    bool m_continued = false;
    State m_state;
};
