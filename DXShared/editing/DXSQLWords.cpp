// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/DXSQLWords.h"

#include "query/SQLStatementReader.h"
#include "query/SQLTokenizer.h"

namespace
{

using Kind = SQLToken::Kind;

bool isIdentifier(Kind kind)
{
    return kind == Kind::QuotedIdentifier || kind == Kind::UnicodeIdentifier;
}

bool isSign(Kind kind)
{
    return kind == Kind::Punctuation || kind == Kind::Operator;
}

QString nameOf(Kind kind, QStringView text)
{
    if (!isIdentifier(kind))
        return text.toString();
    const qsizetype open = text.indexOf(u'"') + 1;
    QString name = text.sliced(open, std::max<qsizetype>(text.size() - open - 1, 0)).toString();
    return name.replace(QLatin1String("\"\""), QLatin1String("\""));
}

class Collector final
{
public:
    Collector(const SQLMetadataTokenizerOptions &options, const QString &text, qsizetype caret)
        : m_options(options)
        , m_text(text)
        , m_caret(caret)
    { }

    DXSQLWords collect()
    {
        qsizetype from = 0;
        while (from < m_text.size() && !m_isDone)
            from = collectFrom(from);
        if (!m_hasCaret)
            addCaret({m_caret, 0});
        matchBrackets();
        return std::move(m_words);
    }

private:
    // Where to go on: an open quote before the caret takes nothing of what stands behind it.
    qsizetype collectFrom(qsizetype from)
    {
        SQLTokenizer tokenizer(m_options, QStringView(m_text).sliced(from), {});
        while (auto token = tokenizer.next()) {
            token->range.location += from;
            if (!m_hasCaret && token->range.end() >= m_caret && takesCaret(*token)) {
                if (!token->unterminated || !isIdentifier(token->kind))
                    continue;
                return m_caret;
            }
            if (!token->isBlankOrComment())
                add(*token);
            if (m_isDone)
                break;
        }
        return m_text.size();
    }

    // Whether the token, which reaches to the caret or beyond, is what is being typed or holds it.
    bool takesCaret(const SQLToken &token)
    {
        const bool isInside =
            token.range.location < m_caret && (m_caret < token.range.end() || token.unterminated);
        const bool touches = token.range.location < m_caret;
        switch (token.kind) {
        case Kind::Word:
            if (touches)
                return setTyped(token, 0);
            break;
        case Kind::QuotedIdentifier:
        case Kind::UnicodeIdentifier:
            if (isInside)
                return setTyped(token, view(token).indexOf(u'"') + 1);
            break;
        case Kind::LineComment:
        case Kind::Integer:
        case Kind::Decimal:
        case Kind::Parameter:
        case Kind::Variable:
            m_words.isInLiteral = m_words.isInLiteral || touches;
            break;
        default:
            m_words.isInLiteral = m_words.isInLiteral
                                  || (isInside && token.kind != Kind::Blank && !isSign(token.kind));
            break;
        }
        // Blanks around the caret, or a token that only begins or ends there.
        if (token.range.location >= m_caret || isInside || token.range.end() > m_caret)
            addCaret({m_caret, 0});
        return false;
    }

    bool setTyped(const SQLToken &token, qsizetype opening)
    {
        const QStringView whole = view(token);
        const qsizetype length = m_caret - token.range.location;
        if (length < opening || whole.first(length).contains(u'\n')) {
            m_words.isInLiteral = true;
            return false;
        }
        m_words.typed = whole.first(length).sliced(opening).toString();
        m_words.isQuoted = opening > 0;
        addCaret(token.unterminated ? DXTextRange{token.range.location, length} : token.range);
        return true;
    }

    void addCaret(const DXTextRange &typedRange)
    {
        m_hasCaret = true;
        m_words.typedRange = typedRange;
        m_words.caret = m_words.words.size();
        m_words.words += DXSQLWord{.name = {}, .key = {}, .range = {m_caret, 0}};
    }

    void add(const SQLToken &token)
    {
        const QStringView text = view(token);
        if (m_reader.takeEnds(token.kind, text)) {
            m_reader = {};
            if (m_hasCaret)
                m_isDone = true;
            else
                m_words.words.clear();
            return;
        }
        m_words.words += DXSQLWord{.kind = token.kind,
                                   .name = nameOf(token.kind, text),
                                   .key = token.kind == Kind::Word ? text.toString().toLower()
                                          : isSign(token.kind)     ? text.toString()
                                                                   : QString(),
                                   .range = token.range};
    }

    void matchBrackets()
    {
        QList<qsizetype> open;
        for (qsizetype at = 0; at < m_words.words.size(); ++at) {
            DXSQLWord &word = m_words.words[at];
            if (word.is(u"(")) {
                open += at;
            } else if (word.is(u")") && !open.isEmpty()) {
                word.partner = open.takeLast();
                m_words.words[word.partner].partner = at;
            }
        }
    }

    QStringView view(const SQLToken &token) const
    {
        return QStringView(m_text).sliced(token.range.location, token.range.length);
    }

    const SQLMetadataTokenizerOptions &m_options;
    const QString &m_text;
    const qsizetype m_caret;
    DXSQLWords m_words;
    SQLStatementReader m_reader;
    bool m_hasCaret = false;
    bool m_isDone = false;
};

} // namespace

DXSQLWords DXSQLWords::of(const SQLMetadataTokenizerOptions &options, const QString &text,
                          qsizetype caret)
{
    return Collector(options, text, caret).collect();
}
