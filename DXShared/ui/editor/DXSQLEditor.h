// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "core/DXTextRange.h"
#include "query/DXQuerySplitter.h"
#include "query/SQLMetadataTokenizerOptions.h"
#include "ui/editor/DXScintilla.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class DXSQLBrackets;
class DXSQLFolding;
class DXSQLStyler;
class DXSQLTyping;
struct DXTheme;

/// An editor for SQL: coloured, folded and paired by our own tokenizer, so that what it shows as a
/// string, a comment or a statement is what will be sent as one. Positions are in UTF-16 code
/// units, as in the editor's text. Its commands (comment, move, duplicate, fold, zoom, more carets)
/// are the widget's actions(), with texts and keys, for menus and palettes; their keys work while
/// the editor has the focus. Dropped text goes in where it is dropped. [main]
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
    /// What is drawn into the text, by Scintilla's numbers; those from FirstFreeIndicator on are
    /// for others.
    enum Indicator {
        ErrorIndicator = QsciScintillaBase::INDIC_CONTAINER,
        RunningIndicator,
        AutoClosedIndicator,
        FirstFreeIndicator,
    };
    explicit DXSQLEditor(const Init &init, QWidget *parent = nullptr);
    ~DXSQLEditor() override;

    qsizetype caretPosition() const;
    void setCaretPosition(qsizetype position);
    /// QsciScintilla's hasSelectedText() stays true after the selection was typed over.
    bool hasSelection() const;
    /// Null when nothing is selected.
    QString selectedSql() const;
    DXTextRange selectedRange() const;
    void setSelectedRange(const DXTextRange &range);
    /// The statement that the caret stands in or right behind; none in a text without any.
    std::optional<DXQueryDetails> statementAtCaret() const;
    /// All statements of the text, or of the selection when there is one.
    QList<DXQueryDetails> statements() const;

    /// The text around the caret: the statement that it stands in, with a little more where that is
    /// cheaper to tell, and what follows up to a limit. Quick in a text of any size.
    struct Surroundings
    {
        QString text;
        /// Where the caret stands in it.
        qsizetype caret = 0;
    };
    Surroundings surroundings() const;
    /// Puts text in place of so many code units before and behind the caret, as one step to undo,
    /// and the caret behind it.
    void replaceAroundCaret(qsizetype before, qsizetype behind, const QString &text);

    /// Puts text in place of a range, as one step to undo; the caret stays where it was in what
    /// stands outside.
    void replaceRange(const DXTextRange &range, const QString &text);

    /// Underlines the ranges as failed, in place of those before. The marks go when their line is
    /// edited.
    void markErrors(const QList<DXTextRange> &ranges);
    /// Shows which statement runs; none takes the mark away.
    void markRunning(const std::optional<DXTextRange> &range);
    void clearMarks();

    /// Puts "-- " before the lines of the selection, or takes it away when all of them have it.
    void toggleComment();
    /// Copies the lines of the selection, or the caret's, to below them.
    void duplicateLines();
    /// Folds or unfolds what begins in the caret's line or, if nothing does, what encloses it.
    void toggleFoldAtCaret();
    void foldAll();
    void unfoldAll();
    /// Inserts text at the caret, in place of the selection.
    void insertText(const QString &text);

    /// The text as it is kept, a quick copy.
    QByteArray utf8() const;
    /// Scintilla's positions, which count bytes, and ours; both quick in a text of any size.
    long byteAt(qsizetype position) const;
    qsizetype positionOf(long byte) const;

protected:
    void changeEvent(QEvent *event) override;
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void setUpView();
    void applyTheme(const DXTheme &theme);
    void modified(int bytePosition, int kind, int linesAdded);
    void mark(int indicator, const QList<DXTextRange> &ranges);
    QByteArray bytes(long begin, long end) const;
    long replaceBytes(long begin, long end, const QString &text);
    void showLineNumbers();
    int line(long byte) const;

    const DXQuerySplitter m_splitter;
    const std::unique_ptr<DXSQLStyler> m_styler;
    const std::unique_ptr<DXSQLBrackets> m_brackets;
    const std::unique_ptr<DXSQLTyping> m_typing;
    const std::unique_ptr<DXSQLFolding> m_folding;
};
