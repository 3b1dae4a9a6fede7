// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/ActionSet.h"

#include "ui/DXIcon.h"

#include <QAction>
#include <QActionGroup>
#include <QCoreApplication>
#include <QMenu>
#include <QWidget>

namespace
{

using Id = ActionSet::Id;

struct Definition
{
    Id id;
    const char *title;
    /// Separated as QKeySequence::listFromString() wants it.
    const char *keys;
    /// The name of the icon; empty for none.
    const char *icon;
};

const Definition definitions[] = {
    {Id::NewConnection, QT_TRANSLATE_NOOP("ActionSet", "&New connection…"), "Ctrl+N", ""},
    {Id::Disconnect, QT_TRANSLATE_NOOP("ActionSet", "&Disconnect"), "Ctrl+Alt+D", ""},
    {Id::NewTab, QT_TRANSLATE_NOOP("ActionSet", "New &tab"), "Ctrl+T", ""},
    {Id::Open, QT_TRANSLATE_NOOP("ActionSet", "&Open…"), "Ctrl+O", ""},
    {Id::Save, QT_TRANSLATE_NOOP("ActionSet", "&Save"), "Ctrl+S", ""},
    {Id::SaveAs, QT_TRANSLATE_NOOP("ActionSet", "Save &as…"), "Ctrl+Shift+S", ""},
    {Id::CloseTab, QT_TRANSLATE_NOOP("ActionSet", "&Close tab"), "Ctrl+W", ""},
    {Id::ReopenTab, QT_TRANSLATE_NOOP("ActionSet", "Reopen c&losed tab"), "Ctrl+Shift+T", ""},
    {Id::Quit, QT_TRANSLATE_NOOP("ActionSet", "&Quit"), "Ctrl+Q", ""},
    {Id::Undo, QT_TRANSLATE_NOOP("ActionSet", "&Undo"), "Ctrl+Z", ""},
    {Id::Redo, QT_TRANSLATE_NOOP("ActionSet", "&Redo"), "Ctrl+Shift+Z", ""},
    {Id::Cut, QT_TRANSLATE_NOOP("ActionSet", "Cu&t"), "Ctrl+X", ""},
    {Id::Copy, QT_TRANSLATE_NOOP("ActionSet", "&Copy"), "Ctrl+C", ""},
    {Id::Paste, QT_TRANSLATE_NOOP("ActionSet", "&Paste"), "Ctrl+V", ""},
    {Id::RunStatement, QT_TRANSLATE_NOOP("ActionSet", "&Run"), "Ctrl+Return; Ctrl+Enter",
     "Action-Run"},
    {Id::RunAll, QT_TRANSLATE_NOOP("ActionSet", "Run &all"), "F5", "Action-RunAll"},
    {Id::Cancel, QT_TRANSLATE_NOOP("ActionSet", "&Cancel"), "Ctrl+.", "Action-Cancel"},
    {Id::Commit, QT_TRANSLATE_NOOP("ActionSet", "Co&mmit"), "Ctrl+Shift+M", "Action-Commit"},
    {Id::RollBack, QT_TRANSLATE_NOOP("ActionSet", "Roll &back"), "Ctrl+Shift+R", "Action-RollBack"},
    {Id::ManualCommit, QT_TRANSLATE_NOOP("ActionSet", "Manual c&ommit"), "Ctrl+Alt+M", ""},
    {Id::NewStoredProcedure, QT_TRANSLATE_NOOP("ActionSet", "New stored proce&dure"), "Ctrl+Alt+P",
     ""},
    {Id::NextResult, QT_TRANSLATE_NOOP("ActionSet", "&Next result"), "Alt+Down", ""},
    {Id::PreviousResult, QT_TRANSLATE_NOOP("ActionSet", "&Previous result"), "Alt+Up", ""},
    {Id::CopyAs, QT_TRANSLATE_NOOP("ActionSet", "Cop&y as…"), "Ctrl+Shift+C", ""},
    {Id::SaveCsv, QT_TRANSLATE_NOOP("ActionSet", "&Save result as CSV…"), "Ctrl+Alt+S", ""},
    {Id::Sidebar, QT_TRANSLATE_NOOP("ActionSet", "&Sidebar"), "Ctrl+B", ""},
    {Id::SearchTree, QT_TRANSLATE_NOOP("ActionSet", "Search the &tree"), "Ctrl+Shift+E", ""},
    {Id::GoToObject, QT_TRANSLATE_NOOP("ActionSet", "&Go to object…"), "Ctrl+P", ""},
    {Id::CommandPalette, QT_TRANSLATE_NOOP("ActionSet", "&Command palette…"), "Ctrl+Shift+P", ""},
    {Id::GoToEditor, QT_TRANSLATE_NOOP("ActionSet", "Go to the e&ditor"), "F6", ""},
    {Id::GoToFailure, QT_TRANSLATE_NOOP("ActionSet", "Go to the &error message"), "F8", ""},
    {Id::Refresh, QT_TRANSLATE_NOOP("ActionSet", "&Refresh"), "Ctrl+R", ""},
    {Id::NextTab, QT_TRANSLATE_NOOP("ActionSet", "&Next tab"), "Ctrl+Tab; Ctrl+PgDown", ""},
    {Id::PreviousTab, QT_TRANSLATE_NOOP("ActionSet", "&Previous tab"), "Ctrl+Shift+Tab; Ctrl+PgUp",
     ""},
    {Id::AppearanceSystem, QT_TRANSLATE_NOOP("ActionSet", "As the &desktop"), "Ctrl+Alt+1", ""},
    {Id::AppearanceLight, QT_TRANSLATE_NOOP("ActionSet", "&Light"), "Ctrl+Alt+2", ""},
    {Id::AppearanceDark, QT_TRANSLATE_NOOP("ActionSet", "Da&rk"), "Ctrl+Alt+3", ""},
    {Id::About, QT_TRANSLATE_NOOP("ActionSet", "&About"), "Shift+F1", ""},
};

} // namespace

ActionSet::ActionSet(QWidget &window)
    : m_window(window)
{
    for (const Definition &definition : definitions) {
        auto *const action =
            new QAction(QCoreApplication::translate("ActionSet", definition.title), &window);
        if (*definition.keys)
            action->setShortcuts(QKeySequence::listFromString(QLatin1String(definition.keys)));
        // The window's own, so that a key works while its menu is not to be seen.
        window.addAction(action);
        m_actions.insert(definition.id, action);
        m_order.append(action);
    }
    // Shown in the menu only: each editor, grid and field takes the key itself.
    for (const Id id : {Id::Cut, Id::Copy, Id::Paste})
        m_actions[id]->setShortcutContext(Qt::WidgetShortcut);
    updateIcons();
    auto *const appearances = new QActionGroup(&window);
    for (const Id id : {Id::AppearanceSystem, Id::AppearanceLight, Id::AppearanceDark})
        appearances->addAction(m_actions[id]);
    for (const Id id : {Id::AppearanceSystem, Id::AppearanceLight, Id::AppearanceDark,
                        Id::ManualCommit, Id::Sidebar})
        m_actions[id]->setCheckable(true);
    m_actions[Id::Sidebar]->setChecked(true);
}

void ActionSet::updateIcons() const
{
    for (const Definition &definition : definitions)
        m_actions[definition.id]->setIcon(
            DXIcon::named(QLatin1String(definition.icon), m_window.palette()));
}

void ActionSet::fill(QMenu &menu, const QList<QList<Id>> &groups) const
{
    for (const QList<Id> &group : groups) {
        if (!menu.isEmpty())
            menu.addSeparator();
        for (const Id id : group)
            menu.addAction(m_actions[id]);
    }
}

void ActionSet::connect(Id id, const std::function<void()> &command) const
{
    QObject::connect(m_actions[id], &QAction::triggered, &m_window, command);
}

void ActionSet::connectToggle(Id id, const std::function<void(bool isOn)> &command) const
{
    QObject::connect(m_actions[id], &QAction::toggled, &m_window, command);
}
