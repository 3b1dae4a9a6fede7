// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "query/DXQuerySplitter.h"

#include "query/SQLTokenizer.h"

#include <QStringView>

#include <algorithm>
#include <utility>

namespace
{

// Whether word is keyWord, which is given in small letters.
bool isKeyWord(QStringView word, QLatin1String keyWord)
{
    const auto matches = [](QChar c, char letter) { return (c.unicode() | 0x20) == letter; };
    return word.size() == keyWord.size()
           && std::equal(word.begin(), word.end(), keyWord.begin(), matches);
}

bool isRoutine(QStringView word)
{
    return isKeyWord(word, QLatin1String("function"))
           || isKeyWord(word, QLatin1String("procedure"));
}

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

// Follows a statement to its semicolon.
class StatementReader final
{
public:
    // Takes the next token that is neither blank nor comment, which stands in the text as `text`.
    // True when it ends the statement.
    bool takeEnds(SQLToken::Kind kind, QStringView text);

private:
    // How much of CREATE [OR REPLACE] FUNCTION … BEGIN ATOMIC … END has been read.
    enum class Stage { Start, Create, Or, Replace, Routine, Begin, Body, OtherStatement };

    void takeWord(QStringView word);
    Stage stageAfter(QStringView word);
    Stage stageInBodyAfter(QStringView word);

    Stage m_stage = Stage::Start;
    // What is open: parentheses, and CASE expressions in the body.
    qsizetype m_parentheses = 0;
    qsizetype m_cases = 0;
    // A column may be called "end" behind a point or AS.
    bool m_nameFollows = false;
};

bool StatementReader::takeEnds(SQLToken::Kind kind, QStringView text)
{
    if (kind == SQLToken::Kind::Word) {
        takeWord(text);
        return false;
    }
    const QChar c = kind == SQLToken::Kind::Punctuation ? text.front() : QChar();
    if (c == u';' && m_parentheses == 0 && m_stage != Stage::Body)
        return true;
    if (c == u'(')
        ++m_parentheses;
    else if (c == u')' && m_parentheses > 0)
        --m_parentheses;
    m_nameFollows = c == u'.';
    if (m_stage < Stage::Routine)
        m_stage = Stage::OtherStatement;
    else if (m_stage == Stage::Begin)
        m_stage = Stage::Routine;
    return false;
}

void StatementReader::takeWord(QStringView word)
{
    const bool isName = std::exchange(m_nameFollows, false);
    if (m_stage != Stage::OtherStatement && m_parentheses == 0 && !isName)
        m_stage = stageAfter(word);
}

StatementReader::Stage StatementReader::stageAfter(QStringView word)
{
    switch (m_stage) {
    case Stage::Start:
        return isKeyWord(word, QLatin1String("create")) ? Stage::Create : Stage::OtherStatement;
    case Stage::Create:
        if (isKeyWord(word, QLatin1String("or")))
            return Stage::Or;
        return isRoutine(word) ? Stage::Routine : Stage::OtherStatement;
    case Stage::Or:
        return isKeyWord(word, QLatin1String("replace")) ? Stage::Replace : Stage::OtherStatement;
    case Stage::Replace:
        return isRoutine(word) ? Stage::Routine : Stage::OtherStatement;
    case Stage::Begin:
        if (isKeyWord(word, QLatin1String("atomic")))
            return Stage::Body;
        [[fallthrough]];
    case Stage::Routine:
        return isKeyWord(word, QLatin1String("begin")) ? Stage::Begin : Stage::Routine;
    case Stage::Body:
        return stageInBodyAfter(word);
    case Stage::OtherStatement:
        break;
    }
    return Stage::OtherStatement;
}

StatementReader::Stage StatementReader::stageInBodyAfter(QStringView word)
{
    if (isKeyWord(word, QLatin1String("case")))
        ++m_cases;
    else if (isKeyWord(word, QLatin1String("end")) && --m_cases < 0)
        return Stage::Routine;
    else
        m_nameFollows = isKeyWord(word, QLatin1String("as"));
    return Stage::Body;
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
    StatementReader reader;
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
