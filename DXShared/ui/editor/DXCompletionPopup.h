// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "editing/DXSQLCompletion.h"

#include <QFrame>

#include <memory>
#include <utility>

class DXCompletionDelegate;
class DXCompletionModel;
class DXSQLEditor;
class QKeyEvent;
class QListView;

/// The list of what may be written at an editor's caret. It opens by Ctrl+Space (the editor's
/// action "editor.complete"), and by itself behind a dot and once two letters of a name stand
/// there. The editor keeps the focus.
///
/// Tab takes the current row. Return takes it only when it was chosen: the list was opened by the
/// key, or somebody went to a row; so a line break typed while the list opened by itself stays one.
/// Esc closes the list and nothing else. It lives as long as its editor. [main]
class DXSHARED_EXPORT DXCompletionPopup final : public QFrame
{
    Q_OBJECT

public:
    explicit DXCompletionPopup(DXSQLEditor &editor);
    ~DXCompletionPopup() override;

    /// What answers; none, as for an editor without a connection, and the list never opens.
    void setCompletion(const std::shared_ptr<const DXSQLCompletion> &completion);
    /// Whether it opens while somebody types; true at first.
    void setOpensByItself(bool yes) { m_opensByItself = yes; }

    /// Opens the list at the caret, if there is anything to offer.
    void open();

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void changeEvent(QEvent *event) override;

private:
    // Where the caret is, and how long the text.
    using State = std::pair<long, long>;

    State state() const;
    void typed(int character);
    void refresh();
    void showAnswer();
    void place();
    void choose(int row);
    void accept();
    bool takesKey(const QKeyEvent &event);
    bool isForMe(const QKeyEvent &event) const;
    int rowAfter(int key) const;
    void applyTheme();

    DXSQLEditor &m_editor;
    DXCompletionModel *const m_model;
    QListView *const m_list;
    DXCompletionDelegate *const m_delegate;
    std::shared_ptr<const DXSQLCompletion> m_completion;
    DXSQLCompletion::Answer m_answer;
    // The caret in what the answer was made for.
    qsizetype m_caret = 0;
    // Where the name begins, in the editor's bytes.
    long m_anchor = -1;
    State m_state;
    bool m_opensByItself = true;
    bool m_wasAskedFor = false;
    bool m_isChosen = false;
};
