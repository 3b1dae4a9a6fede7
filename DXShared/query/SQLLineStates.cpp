// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "query/SQLLineStates.h"

#include <algorithm>

namespace
{

// What an editor can show.
constexpr int deepest = 2000;

int depthOf(const SQLLineStates::Line &state)
{
    const int depth = (state.isInStatement ? 1 : 0) + state.reader.parentheses()
                      + (state.reader.isInBody() ? 1 : 0) + (state.lexical.open ? 1 : 0);
    return std::min(depth, deepest);
}

bool leavesTheSame(const SQLLineStates::Line &left, const SQLLineStates::Line &right)
{
    return left.isInStatement == right.isInStatement && left.reader == right.reader
           && left.lexical == right.lexical;
}

} // namespace

SQLLineStates::SQLLineStates(const SQLMetadataTokenizerOptions &options, const Source &source)
    : m_options(options)
    , m_source(source)
{ }

void SQLLineStates::changed(qsizetype line, qsizetype linesAdded)
{
    if (line >= m_lines.size())
        return;
    if (linesAdded > 0)
        m_lines.insert(line, linesAdded, Line());
    else if (linesAdded < 0)
        m_lines.remove(line, std::min(-linesAdded, m_lines.size() - line));
    const qsizetype end = line + std::max<qsizetype>(linesAdded, 0) + 1;
    const bool wasClean = m_dirtyFrom == m_dirtyEnd;
    if (!wasClean && m_dirtyEnd > line)
        m_dirtyEnd = std::max(line, m_dirtyEnd + linesAdded);
    m_dirtyFrom = wasClean ? line : std::min(m_dirtyFrom, line);
    m_dirtyEnd = std::min(wasClean ? end : std::max(m_dirtyEnd, end), m_lines.size());
}

qsizetype SQLLineStates::firstUnknown() const
{
    return m_dirtyFrom != m_dirtyEnd ? m_dirtyFrom : m_lines.size();
}

void SQLLineStates::readUpTo(qsizetype line)
{
    const qsizetype last = std::min(line, m_source.lineCount() - 1);
    for (qsizetype at = firstUnknown(); at <= last; at = firstUnknown())
        readLine(at);
}

bool SQLLineStates::readSome(qsizetype count)
{
    const qsizetype end = m_source.lineCount();
    while (count-- > 0 && firstUnknown() < end)
        readLine(firstUnknown());
    return firstUnknown() < end;
}

SQLLineStates::Line SQLLineStates::before(qsizetype line)
{
    readUpTo(line - 1);
    return line > 0 && line <= m_lines.size() ? m_lines[line - 1] : Line();
}

qsizetype SQLLineStates::statementStart(qsizetype line, qsizetype limit)
{
    readUpTo(line - 1);
    const qsizetype last = std::max<qsizetype>(line - limit, 0);
    while (line > last && m_lines[line - 1].isInStatement)
        --line;
    return line;
}

void SQLLineStates::readLine(qsizetype line)
{
    const Line state = read(m_source.lineText(line), line > 0 ? m_lines[line - 1] : Line());
    if (line == m_lines.size()) {
        m_lines.append(state);
    } else {
        const bool isSame = leavesTheSame(state, m_lines[line]);
        m_lines[line] = state;
        m_dirtyFrom = line + 1;
        if (m_dirtyFrom > m_dirtyEnd)
            m_dirtyEnd = m_dirtyFrom;
        // Behind the edit, a line that leaves what it left before changes nothing further down.
        if (m_dirtyFrom == m_dirtyEnd && !isSame && m_dirtyEnd < m_lines.size())
            ++m_dirtyEnd;
    }
    m_source.lineRead(line, state);
}

SQLLineStates::Line SQLLineStates::read(const QString &text, const Line &before) const
{
    Line state = before;
    const int depthBefore = depthOf(before);
    int least = depthBefore;
    SQLTokenizer tokenizer(m_options, text, before.lexical);
    while (const auto token = tokenizer.next()) {
        if (!token->isBlankOrComment()) {
            const auto words = QStringView(text).sliced(token->range.location, token->range.length);
            state.isInStatement = state.isInStatement || words != u";";
            if (state.reader.takeEnds(token->kind, words)) {
                state.reader = {};
                state.isInStatement = false;
            }
        }
        state.lexical.open = tokenizer.state().open;
        least = std::min(least, depthOf(state));
    }
    state.lexical = tokenizer.state();
    state.isFoldHeader = depthOf(state) > least;
    state.foldDepth = static_cast<quint16>(state.isFoldHeader ? least : depthBefore);
    return state;
}
