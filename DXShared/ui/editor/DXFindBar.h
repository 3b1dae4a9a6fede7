// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "core/DXTextRange.h"
#include "editing/DXTextSearch.h"

#include <QList>
#include <QTimer>
#include <QWidget>

#include <memory>

class DXSQLEditor;
class QAction;
class QLabel;
class QGridLayout;
class QLayout;
class QLineEdit;
class QToolButton;

/// Finds and replaces in an editor; to be laid out under it, hidden until somebody asks for it. It
/// gives the editor the actions "editor.find" (Ctrl+F), "editor.replace" (Ctrl+H),
/// "editor.findNext" (F3) and "editor.findPrevious" (Shift+F3). Esc closes it, from the bar and
/// from the editor.
///
/// While it is open all matches are marked and counted, searched for in the background, however
/// large the text is. With several lines selected when it opens it keeps to them; with part of one
/// line it looks for that. [main]
class DXSHARED_EXPORT DXFindBar final : public QWidget
{
    Q_OBJECT

public:
    explicit DXFindBar(DXSQLEditor &editor, QWidget *parent = nullptr);
    ~DXFindBar() override;

    void openToFind();
    void openToReplace();
    /// Hides the bar and gives the focus to the editor.
    void dismiss();

    void findNext();
    void findPrevious();
    /// Replaces the match that is selected, and goes on to the next.
    void replaceCurrent();
    /// Replaces every match, as one step to undo.
    void replaceAll();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    struct Search;
    /// What a search that was begun is for.
    enum class Then { Nothing, SelectFromStart, Next, Previous, ReplaceAll };
    struct Lines
    {
        int first = -1;
        int last = -1;

        friend bool operator==(const Lines &, const Lines &) = default;
    };

    void buildFindRow(QGridLayout &layout);
    void buildReplaceRow(QGridLayout &layout);
    QToolButton *addToggle(QLayout &row, const QString &text, const QString &tip,
                           const QKeySequence &key);
    void clickOn(const QKeySequence &key, QToolButton &button);
    QToolButton *addButton(QLayout &row, const QString &text, const QString &tip,
                           const QKeySequence &key);
    void addActions();
    void open(bool replaces);
    void takeSelection();
    void limitTo(const DXTextRange &range);
    DXTextSearch::Query query() const;
    DXTextRange searchedRange() const;
    void queryChanged();
    void textChanged();
    void search(Then then);
    void found(const QList<DXTextRange> &matches);
    void step(bool forward);
    void select(qsizetype index);
    void markVisible();
    void showCount();
    void applyTheme();
    qsizetype firstMatchFrom(qsizetype position) const;
    qsizetype selectedMatch() const;

    DXSQLEditor &m_editor;
    QLineEdit *const m_wanted;
    QLineEdit *const m_replacement;
    QLabel *const m_count;
    QLabel *const m_error;
    QWidget *const m_replaceButtons;
    QToolButton *m_case = nullptr;
    QToolButton *m_words = nullptr;
    QToolButton *m_expression = nullptr;
    QToolButton *m_inSelection = nullptr;
    QAction *m_escape = nullptr;
    QTimer m_delay;

    // The search under way, or the last one.
    std::shared_ptr<Search> m_search;
    Then m_then = Then::Nothing;
    QList<DXTextRange> m_matches;
    // Whether they are those of the text and the query as they are now.
    bool m_isCurrent = false;
    Lines m_marked;
    // Where the selection began when the bar was opened: typing looks from there on.
    qsizetype m_start = 0;
};
