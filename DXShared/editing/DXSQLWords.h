// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXTextRange.h"
#include "query/SQLMetadataTokenizerOptions.h"
#include "query/SQLToken.h"

#include <QList>
#include <QString>

/// A token of a statement as the completion looks at it.
struct DXSQLWord
{
    /// The token's; Blank for the caret itself, which stands in place of the name being typed.
    SQLToken::Kind kind = SQLToken::Kind::Blank;
    /// Of a name, without its quotes; of other tokens, as they are written.
    QString name;
    /// Of a word without quotes, in small letters; else empty, and the sign itself for brackets,
    /// commas, dots and operators.
    QString key;
    DXTextRange range;
    /// Of a bracket, the index of the other one, or -1.
    qsizetype partner = -1;

    bool isCaret() const { return kind == SQLToken::Kind::Blank; }
    bool isName() const
    {
        return kind == SQLToken::Kind::Word || kind == SQLToken::Kind::QuotedIdentifier
               || kind == SQLToken::Kind::UnicodeIdentifier;
    }
    bool is(QStringView word) const { return key == word; }
    bool isOneOf(std::initializer_list<QStringView> words) const
    {
        for (const QStringView word : words) {
            if (key == word)
                return true;
        }
        return false;
    }
};

/// The statement in which a caret stands, as words, and the name that is being typed there. [any]
struct DXSQLWords
{
    /// Without blanks and comments, and without the name being typed.
    QList<DXSQLWord> words;
    /// The index of the caret in words.
    qsizetype caret = 0;
    /// What is typed of a name, up to the caret.
    QString typed;
    /// The whole name that is being typed, quotes and all; empty at the caret when there is none.
    DXTextRange typedRange;
    /// Whether it began with a quote.
    bool isQuoted = false;
    /// Whether names make no sense at the caret: in a string, a comment or a number.
    bool isInLiteral = false;

    static DXSQLWords of(const SQLMetadataTokenizerOptions &options, const QString &text,
                         qsizetype caret);
};
