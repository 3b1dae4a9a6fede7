// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "query/SQLToken.h"

#include <QByteArray>
#include <QList>
#include <QStringList>

#include <optional>
#include <ostream>

/// What PostgreSQL's own scanner and parser make of a text, by libpg_query. All positions count
/// bytes of UTF-8.
namespace PgQueryOracle
{

/// A token as far as both scanners tell the same: strings without a prefix, with E and between
/// dollars are String, whole numbers too large for an int are Decimal to the one and Integer to
/// the other, so every number is Integer; marks of all kinds are Operator. What begins with U& ends
/// at its start: there the library tells no end.
struct Token
{
    SQLToken::Kind kind;
    qsizetype start;
    qsizetype end;

    friend bool operator==(const Token &, const Token &) = default;
    friend void PrintTo(const Token &token, std::ostream *out)
    {
        *out << int(token.kind) << " from " << token.start << " to " << token.end;
    }
};

/// The tokens with comments, or nothing for a text that the scanner refuses.
std::optional<QList<Token>> scan(const QByteArray &text);
/// Our tokens as the oracle would give them: blanks left out, the pieces of a string joined.
/// Nothing when a line comment stands between such pieces: there the library, unlike the server,
/// begins a new string.
std::optional<QList<Token>> translated(const QString &text, const QList<SQLToken> &tokens);
/// The statements, or nothing for a text that does not parse.
std::optional<QStringList> split(const QByteArray &text);

} // namespace PgQueryOracle
