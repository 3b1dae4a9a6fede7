// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXTextRange.h"

/// A stretch of SQL text that belongs together, with the prefix, quotes and tags that are part of
/// it.
struct SQLToken
{
    enum class Kind : quint8 {
        Blank, ///< one run of blanks and line breaks
        LineComment, ///< up to its line break, which is not part of it
        BlockComment,
        Word, ///< an unquoted identifier or key word
        QuotedIdentifier, ///< "…"
        UnicodeIdentifier, ///< U&"…"
        String, ///< '…'
        EscapeString, ///< E'…'
        UnicodeString, ///< U&'…'
        NationalString, ///< N'…'
        BitString, ///< B'…'
        HexString, ///< X'…'
        DollarString, ///< $tag$…$tag$
        Integer,
        Decimal, ///< with a point or an exponent
        Parameter, ///< $1
        Variable, ///< @name or @@name, where the options say so
        Operator, ///< also :: .. := and =>
        Punctuation, ///< one of ( ) [ ] , ; . :
        Other, ///< one character that has no meaning here
    };

    Kind kind = Kind::Other;
    /// It goes on with what began before: in the text before the tokenizer's, or in a string that
    /// ended on an earlier line with nothing but blanks and line comments between.
    bool continuesBefore = false;
    /// Its end is not in the text.
    bool unterminated = false;
    DXTextRange range;

    bool isBlankOrComment() const { return kind <= Kind::BlockComment; }

    friend bool operator==(const SQLToken &, const SQLToken &) = default;
};
