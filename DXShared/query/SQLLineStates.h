// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "query/SQLMetadataTokenizerOptions.h"
#include "query/SQLStatementReader.h"
#include "query/SQLTokenizer.h"

#include <QList>
#include <QString>

#include <functional>

/// What each line of an edited text leaves open for the next one, and how deep it lies when the
/// text is folded. Lines are read only when somebody asks for them, and after an edit only up to
/// where everything is as it was before, so that a key in a large text costs a line or two. An
/// object belongs to one thread. [any]
class DXSHARED_EXPORT SQLLineStates final
{
public:
    struct Line
    {
        SQLTokenizer::State lexical;
        SQLStatementReader reader;
        /// Whether a statement has begun and not ended.
        bool isInStatement = false;
        /// Whether the line opens something that ends on a later line.
        bool isFoldHeader = false;
        /// How many statements, parentheses, comments and strings enclose the line; a line that
        /// closes some and opens others lies where it is least deep, so that it heads the next.
        quint16 foldDepth = 0;
    };
    /// The text, as lines that each hold the break at their end.
    struct Source
    {
        std::function<qsizetype()> lineCount;
        std::function<QString(qsizetype line)> lineText;
        /// Told of every line that was read, in ascending order.
        std::function<void(qsizetype line, const Line &state)> lineRead;
    };
    SQLLineStates(const SQLMetadataTokenizerOptions &options, const Source &source);

    /// A text was inserted or removed that began in line and held linesAdded line breaks (less than
    /// 0 when removed). The source gives the new text already.
    void changed(qsizetype line, qsizetype linesAdded);
    /// Reads what is needed to know everything up to line.
    void readUpTo(qsizetype line);
    /// Reads up to count lines that are not known; false when there are none left.
    bool readSome(qsizetype count);
    /// The first line that is not known.
    qsizetype firstUnknown() const;

    /// What stands open before line, which is read up to there.
    Line before(qsizetype line);
    /// The first line of the statement that is open before line, or else line; at most limit lines
    /// are looked at.
    qsizetype statementStart(qsizetype line, qsizetype limit);

private:
    void readLine(qsizetype line);
    Line read(const QString &text, const Line &before) const;

    const SQLMetadataTokenizerOptions m_options;
    const Source m_source;
    QList<Line> m_lines;
    // Lines from here are not what they were when they were read, and behind the end only what
    // stands before them may differ. Equal when all are as they were.
    qsizetype m_dirtyFrom = 0;
    qsizetype m_dirtyEnd = 0;
};

Q_DECLARE_TYPEINFO(SQLLineStates::Line, Q_RELOCATABLE_TYPE);
