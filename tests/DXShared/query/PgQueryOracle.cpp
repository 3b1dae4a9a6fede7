// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DXShared/query/PgQueryOracle.h"

#include <pg_query.h>

#include <algorithm>
#include <array>

namespace
{

using Kind = SQLToken::Kind;
using PgQueryOracle::Token;

// Reads the library's answer, a protobuf message; protobuf-c's own reader is not installed with it.
class Message final
{
public:
    explicit Message(QByteArrayView bytes)
        : m_bytes(bytes)
    { }

    bool atEnd() const { return m_bytes.isEmpty(); }
    quint64 number()
    {
        quint64 value = 0;
        for (int shift = 0;; shift += 7) {
            const auto byte = static_cast<uchar>(m_bytes.front());
            m_bytes = m_bytes.sliced(1);
            value |= quint64(byte & 0x7F) << shift;
            if (byte < 0x80)
                return value;
        }
    }
    Message message()
    {
        const auto size = static_cast<qsizetype>(number());
        const Message result(m_bytes.first(size));
        m_bytes = m_bytes.sliced(size);
        return result;
    }

private:
    QByteArrayView m_bytes;
};

// The numbers that its header gives to kinds of tokens; key words follow.
enum ScannerToken {
    Ident = 258,
    UIdent,
    FConst,
    SConst,
    USConst,
    BConst,
    XConst,
    Op,
    IConst,
    Param
};
enum { NotEquals = 274, SQLComment, CComment };

Kind kindOf(quint64 token, char first)
{
    switch (token) {
    case Ident:
        return first == '"' ? Kind::QuotedIdentifier : Kind::Word;
    case UIdent:
        return Kind::UnicodeIdentifier;
    case SConst:
        return Kind::String;
    case USConst:
        return Kind::UnicodeString;
    case BConst:
        return Kind::BitString;
    case XConst:
        return Kind::HexString;
    case FConst:
    case IConst:
        return Kind::Integer;
    case Param:
        return Kind::Parameter;
    case SQLComment:
        return Kind::LineComment;
    case CComment:
        return Kind::BlockComment;
    default:
        return token <= NotEquals ? Kind::Operator : Kind::Word;
    }
}

bool tellsEnd(Kind kind)
{
    return kind != Kind::UnicodeString && kind != Kind::UnicodeIdentifier;
}

Token tokenOf(Message message, const QByteArray &text)
{
    std::array<quint64, 6> fields{};
    while (!message.atEnd()) {
        const quint64 tag = message.number();
        fields.at(tag >> 3) = message.number();
    }
    const auto start = static_cast<qsizetype>(fields[1]);
    const Kind kind = kindOf(fields[4], text[start]);
    return {kind, start, tellsEnd(kind) ? static_cast<qsizetype>(fields[2]) : start};
}

// The scanner gives N'…' as the key word for its type and a string.
bool isNationalPrefix(const Token &prefix, const Token &token, const QByteArray &text)
{
    return prefix.kind == Kind::Word && token.kind == Kind::String && prefix.end == token.start
           && prefix.end - prefix.start == 1 && (text[prefix.start] | 0x20) == 'n'
           && text[token.start] == '\'';
}

Kind translatedKind(Kind kind)
{
    switch (kind) {
    case Kind::EscapeString:
    case Kind::NationalString:
    case Kind::DollarString:
        return Kind::String;
    case Kind::Decimal:
        return Kind::Integer;
    case Kind::Punctuation:
    case Kind::Other:
        return Kind::Operator;
    default:
        return kind;
    }
}

} // namespace

std::optional<QList<Token>> PgQueryOracle::scan(const QByteArray &text)
{
    const PgQueryScanResult result = pg_query_scan(text.constData());
    std::optional<QList<Token>> tokens;
    if (!result.error) {
        tokens.emplace();
        Message message({result.pbuf.data, static_cast<qsizetype>(result.pbuf.len)});
        constexpr quint64 versionTag = 1 << 3;
        while (!message.atEnd()) {
            if (message.number() == versionTag) {
                message.number();
                continue;
            }
            Token token = tokenOf(message.message(), text);
            if (!tokens->isEmpty() && isNationalPrefix(tokens->last(), token, text))
                token.start = tokens->takeLast().start;
            tokens->append(token);
        }
    }
    pg_query_free_scan_result(result);
    return tokens;
}

std::optional<QList<Token>> PgQueryOracle::translated(const QString &text,
                                                      const QList<SQLToken> &tokens)
{
    QList<Token> result;
    qsizetype end = 0;
    for (const SQLToken &token : tokens) {
        const qsizetype start = end;
        end += QStringView(text).sliced(token.range.location, token.range.length).toUtf8().size();
        if (token.kind == Kind::Blank)
            continue;
        if (token.continuesBefore) {
            if (result.last().kind == Kind::LineComment)
                return std::nullopt;
            result.last().end = tellsEnd(token.kind) ? end : result.last().start;
            continue;
        }
        result.append({translatedKind(token.kind), start, tellsEnd(token.kind) ? end : start});
    }
    return result;
}

std::optional<QStringList> PgQueryOracle::split(const QByteArray &text)
{
    const PgQuerySplitResult result = pg_query_split_with_parser(text.constData());
    std::optional<QStringList> statements;
    if (!result.error) {
        statements.emplace();
        std::for_each_n(result.stmts, result.n_stmts, [&](const PgQuerySplitStmt *statement) {
            statements->append(
                QString::fromUtf8(text.sliced(statement->stmt_location, statement->stmt_len)));
        });
    }
    pg_query_free_split_result(result);
    return statements;
}
