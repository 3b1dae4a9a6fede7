// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <functional>

class QAction;
class QMenu;
class QWidget;

/// Every command of a window: each has a title, a menu and mostly a key, and the command palette
/// lists them all. [main]
class ActionSet final
{
public:
    /// The actions belong to window, whose keys they take.
    explicit ActionSet(QWidget &window);

    enum class Id {
        NewConnection,
        Disconnect,
        NewTab,
        Open,
        Save,
        SaveAs,
        CloseTab,
        ReopenTab,
        NextTab,
        PreviousTab,
        Quit,
        Undo,
        Redo,
        Cut,
        Copy,
        Paste,
        RunStatement,
        RunAll,
        Cancel,
        Commit,
        RollBack,
        ManualCommit,
        NewStoredProcedure,
        NextResult,
        PreviousResult,
        CopyAs,
        SaveCsv,
        Sidebar,
        SearchTree,
        GoToObject,
        CommandPalette,
        GoToEditor,
        GoToFailure,
        Refresh,
        AppearanceSystem,
        AppearanceLight,
        AppearanceDark,
        About
    };

    QAction *operator[](Id id) const { return m_actions.value(id); }
    /// In the order of the menus.
    const QList<QAction *> &all() const { return m_order; }
    /// Draws the icons anew, in the colours that the window has now.
    void updateIcons() const;
    /// Adds the actions to menu; a separator for each empty place.
    void fill(QMenu &menu, const QList<QList<Id>> &groups) const;
    void connect(Id id, const std::function<void()> &command) const;
    void connectToggle(Id id, const std::function<void(bool isOn)> &command) const;

private:
    QWidget &m_window;
    QHash<Id, QAction *> m_actions;
    QList<QAction *> m_order;
};
