// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "query/DXQuerySplitter.h"

#include "query/SQLStatementReader.h"
#include "query/SQLTokenizer.h"

#include <QStringView>

#include <algorithm>

namespace
{

bool isSemicolon(SQLToken::Kind kind, QStringView text)
{
    return kind == SQLToken::Kind::Punctuation && text.front() == u';';
}

// Counted in blocks of a fixed size, for which the compiler uses vector instructions.
qsizetype lineFeedsIn(QStringView text)
{
    constexpr qsizetype block = 32;
    qsizetype count = 0;
    while (text.size() >= block) {
        quint16 found = 0;
        for (qsizetype i = 0; i < block; ++i)
            found = static_cast<quint16>(found + (text.utf16()[i] == u'\n' ? 1 : 0));
        count += found;
        text = text.sliced(block);
    }
    return count + std::count(text.begin(), text.end(), u'\n');
}

// Decides what stands between two statements, and to which of them it belongs.
class Gap final
{
public:
    // Whether the token belongs to the statement before the gap; once one does not, none does.
    bool takes(SQLToken::Kind kind, QStringView text)
    {
        if (kind == SQLToken::Kind::Blank)
            m_sameLine = m_sameLine && !text.contains(u'\n');
        else if (kind != SQLToken::Kind::LineComment || !m_sameLine)
            m_open = m_open && isSemicolon(kind, text);
        return m_open;
    }

private:
    bool m_open = true;
    bool m_sameLine = true;
};

class Cutter final
{
public:
    explicit Cutter(const QString &text)
        : m_text(text)
    { }

    void cut(qsizetype end)
    {
        const DXTextRange range{m_start, end - m_start};
        m_pieces.append({m_text.sliced(range.location, range.length), m_lines, range});
        m_lines += lineFeedsIn(QStringView(m_text).sliced(range.location, range.length));
        m_start = end;
    }

    QList<DXQueryDetails> finish()
    {
        if (m_start < m_text.size())
            cut(m_text.size());
        return std::move(m_pieces);
    }

private:
    const QString &m_text;
    QList<DXQueryDetails> m_pieces;
    qsizetype m_start = 0;
    qsizetype m_lines = 0;
};

} // namespace

DXQuerySplitter::DXQuerySplitter(const SQLMetadataTokenizerOptions &options)
    : m_options(options)
{ }

QList<DXQueryDetails> DXQuerySplitter::split(const QString &text) const
{
    Cutter cutter(text);
    SQLStatementReader reader;
    Gap gap;
    bool isBetween = true;
    // Where the statement before the gap ends with all that belongs to it; 0 before the first.
    qsizetype previousEnd = 0;
    SQLTokenizer tokenizer(m_options, text, {});
    while (const auto token = tokenizer.next()) {
        if (token->isBlankOrComment() && !isBetween)
            continue;
        const QStringView words =
            QStringView(text).sliced(token->range.location, token->range.length);
        if (isBetween) {
            if (previousEnd > 0 && gap.takes(token->kind, words))
                previousEnd = token->range.end();
            if (token->isBlankOrComment() || isSemicolon(token->kind, words))
                continue;
            if (previousEnd > 0)
                cutter.cut(previousEnd);
            isBetween = false;
        }
        if (reader.takeEnds(token->kind, words)) {
            reader = {};
            gap = {};
            isBetween = true;
            previousEnd = token->range.end();
        }
    }
    return cutter.finish();
}

std::optional<DXQueryDetails> DXQuerySplitter::statementAt(const QString &text,
                                                           qsizetype position) const
{
    const QList<DXQueryDetails> pieces = split(text);
    const auto behind = [position](const DXQueryDetails &piece) {
        return piece.queryRange.location <= position;
    };
    const auto next = std::partition_point(pieces.begin(), pieces.end(), behind);
    return next == pieces.begin() ? std::nullopt : std::optional(*std::prev(next));
}
