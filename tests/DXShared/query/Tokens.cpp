// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DXShared/query/Tokens.h"

#include <algorithm>

namespace
{

using Kind = SQLToken::Kind;

// The end of the line that begins in text at `from`, behind its line feed; `to` where none is
// before.
qsizetype endOfLine(QStringView text, qsizetype from, qsizetype to)
{
    const qsizetype lineFeed = text.first(to).indexOf(u'\n', from);
    return lineFeed < 0 ? to : lineFeed + 1;
}

// The token as reading line by line gives it.
void appendByLine(QList<SQLToken> &pieces, const SQLToken &token, const QString &text)
{
    const bool isBlank = token.kind == Kind::Blank;
    qsizetype from = token.range.location;
    while (from < token.range.end()) {
        const qsizetype to = endOfLine(text, from, token.range.end());
        const bool isFirst = from == token.range.location;
        const bool isLast = to == token.range.end();
        pieces.append({token.kind,
                       token.continuesBefore || (!isFirst && !isBlank),
                       token.unterminated || (!isLast && !isBlank),
                       {from, to - from}});
        from = to;
    }
}

QList<SQLToken> readByLine(const QString &text, const SQLMetadataTokenizerOptions &options)
{
    QList<SQLToken> pieces;
    SQLTokenizer::State state;
    for (qsizetype from = 0; from < text.size();) {
        const qsizetype to = endOfLine(text, from, text.size());
        SQLTokenizer tokenizer(options, QStringView(text).sliced(from, to - from), state);
        while (auto token = tokenizer.next()) {
            token->range.location += from;
            pieces.append(*token);
        }
        state = tokenizer.state();
        from = to;
    }
    return pieces;
}

} // namespace

QList<SQLToken> tokensOf(const QString &text, const SQLMetadataTokenizerOptions &options)
{
    QList<SQLToken> tokens;
    SQLTokenizer tokenizer(options, text, {});
    while (const auto token = tokenizer.next())
        tokens.append(*token);
    return tokens;
}

QStringList wordsOf(const QString &text)
{
    QStringList words;
    for (const SQLToken &token : tokensOf(text)) {
        if (!token.isBlankOrComment())
            words.append(text.sliced(token.range.location, token.range.length));
    }
    return words;
}

QString faultOfTokens(const QString &text, const SQLMetadataTokenizerOptions &options)
{
    const QList<SQLToken> whole = tokensOf(text, options);
    QList<SQLToken> expected;
    qsizetype end = 0;
    for (const SQLToken &token : whole) {
        if (token.range.location != end || token.range.length <= 0)
            return QStringLiteral("a gap at %1").arg(end);
        end = token.range.end();
        appendByLine(expected, token, text);
    }
    if (end != text.size())
        return QStringLiteral("the tokens end at %1 of %2").arg(end).arg(text.size());
    const QList<SQLToken> pieces = readByLine(text, options);
    const auto [one, other] =
        std::mismatch(expected.begin(), expected.end(), pieces.begin(), pieces.end());
    if (one != expected.end() || other != pieces.end())
        return QStringLiteral("reading by line differs at %1")
            .arg(one != expected.end() ? one->range.location : text.size());
    return {};
}
