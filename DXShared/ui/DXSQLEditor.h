// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "core/DXTextRange.h"
#include "query/DXQuerySplitter.h"
#include "query/SQLMetadataTokenizerOptions.h"
#include "query/SQLTokenizer.h"
#include "ui/DXScintilla.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

struct DXTheme;

/// An editor for SQL: coloured by our own tokenizer, so that what it shows as a string, a comment
/// or a statement is what will be sent as one. Positions are in UTF-16 code units, as in the
/// editor's text. [main]
class DXSHARED_EXPORT DXSQLEditor final : public QsciScintilla
{
    Q_OBJECT

public:
    struct Init
    {
        /// How the driver's SQL is read.
        SQLMetadataTokenizerOptions options;
        /// Words to colour, in any case.
        QStringList keywords;
    };
    explicit DXSQLEditor(const Init &init, QWidget *parent = nullptr);

    qsizetype caretPosition() const;
    void setCaretPosition(qsizetype position);
    /// Null when nothing is selected.
    QString selectedSql() const;
    DXTextRange selectedRange() const;
    /// The statement that the caret stands in or right behind; none in a text without any.
    std::optional<DXQueryDetails> statementAtCaret() const;
    /// All statements of the text, or of the selection when there is one.
    QList<DXQueryDetails> statements() const;

    /// Underlines the ranges as failed, in place of those before. The marks go when their line is
    /// edited.
    void markErrors(const QList<DXTextRange> &ranges);
    /// Shows which statement runs; none takes the mark away.
    void markRunning(const std::optional<DXTextRange> &range);
    void clearMarks();

    /// Puts "-- " before the lines of the selection, or takes it away when all of them have it.
    void toggleComment();
    /// Inserts text at the caret, in place of the selection.
    void insertText(const QString &text);

protected:
    void changeEvent(QEvent *event) override;

private:
    void applyTheme(const DXTheme &theme);
    void styleUpTo(int bytePosition);
    int styleOf(const SQLToken &token, QStringView text) const;
    SQLTokenizer::State styleLine(int line, const SQLTokenizer::State &before);
    void modified(int bytePosition, int kind, int linesAdded);
    void mark(int indicator, const QList<DXTextRange> &ranges);
    int byteAt(qsizetype position) const;
    qsizetype positionOf(int byte) const;
    int line(long byte) const;

    const SQLMetadataTokenizerOptions m_options;
    const DXQuerySplitter m_splitter;
    QSet<QString> m_keywords;
    // What each line leaves open for the next, as far as lines were coloured.
    QList<SQLTokenizer::State> m_states;
};
