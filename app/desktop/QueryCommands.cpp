// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/QueryCommands.h"

#include "desktop/ActionSet.h"
#include "ui/editor/DXSQLEditor.h"
#include "ui/query/DXQuerySession.h"
#include "ui/query/DXQueryTab.h"
#include "ui/results/DXResultGrid.h"
#include "ui/results/DXResultPage.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMetaObject>
#include <QSignalBlocker>

namespace
{

using Id = ActionSet::Id;

} // namespace

QueryCommands::QueryCommands(ActionSet &actions, QObject *parent)
    : QObject(parent)
    , m_actions(actions)
{
    connectEditing();
    connectRunning();
    connectResults();
    update();
}

void QueryCommands::follow(DXQueryTab *tab)
{
    if (m_tab)
        disconnect(m_tab, nullptr, this, nullptr);
    m_tab = tab;
    if (tab)
        connect(tab, &DXQueryTab::statusChanged, this, &QueryCommands::update);
    update();
}

void QueryCommands::connectEditing()
{
    // Whatever has the focus cuts and pastes in its own way.
    const auto onFocused = [this](Id id, const char *slot) {
        m_actions.connect(id, [slot] {
            if (QWidget *const focused = QApplication::focusWidget())
                QMetaObject::invokeMethod(focused, slot);
        });
    };
    onFocused(Id::Cut, "cut");
    onFocused(Id::Copy, "copy");
    onFocused(Id::Paste, "paste");
    const auto onEditor = [this](Id id, const std::function<void(DXSQLEditor &)> &command) {
        m_actions.connect(id, [this, command] {
            if (m_tab)
                command(m_tab->editor());
        });
    };
    onEditor(Id::GoToEditor, [](DXSQLEditor &editor) { editor.setFocus(Qt::ShortcutFocusReason); });
    onEditor(Id::Undo, [](DXSQLEditor &editor) { editor.undo(); });
    onEditor(Id::Redo, [](DXSQLEditor &editor) { editor.redo(); });
}

void QueryCommands::connectRunning()
{
    const auto onTab = [this](Id id, const std::function<void(DXQueryTab &)> &command) {
        m_actions.connect(id, [this, command] {
            if (m_tab)
                command(*m_tab);
        });
    };
    onTab(Id::RunStatement, [](DXQueryTab &tab) { tab.runStatementAtCaret(); });
    onTab(Id::RunAll, [](DXQueryTab &tab) { tab.runAll(); });
    onTab(Id::Cancel, [](DXQueryTab &tab) { tab.cancel(); });
    onTab(Id::Commit, [](DXQueryTab &tab) { tab.session().commit(); });
    onTab(Id::RollBack, [](DXQueryTab &tab) { tab.session().rollback(); });
    m_actions.connectToggle(Id::ManualCommit, [this](bool isOn) {
        if (m_tab) {
            m_tab->session().setCommitsManually(isOn);
            Q_EMIT m_tab->statusChanged();
        }
    });
}

void QueryCommands::connectResults()
{
    m_actions.connect(Id::NextResult, [this] { m_tab ? m_tab->showResult(1) : void(); });
    m_actions.connect(Id::PreviousResult, [this] { m_tab ? m_tab->showResult(-1) : void(); });
    m_actions.connect(Id::CopyAs, [this] { showCopyMenu(); });
    m_actions.connect(Id::SaveCsv, [this] {
        if (DXResultPage *const page = m_tab ? m_tab->currentResultPage() : nullptr)
            page->saveAsCsv();
    });
}

void QueryCommands::showCopyMenu()
{
    DXResultPage *const page = m_tab ? m_tab->currentResultPage() : nullptr;
    if (!page || !page->grid())
        return;
    auto menu = page->createMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QRect cell = page->grid()->visualRect(page->grid()->currentIndex());
    menu.release()->popup(page->grid()->viewport()->mapToGlobal(cell.bottomLeft()));
}

void QueryCommands::update()
{
    const bool isThere = m_tab != nullptr;
    const bool isBusy = isThere && m_tab->session().isBusy();
    const bool isOpen = isThere && m_tab->session().isInTransaction();
    for (const Id id :
         {Id::Undo, Id::Redo, Id::Save, Id::SaveAs, Id::CloseTab, Id::ManualCommit, Id::GoToEditor})
        m_actions[id]->setEnabled(isThere);
    m_actions[Id::RunStatement]->setEnabled(isThere && !isBusy);
    m_actions[Id::RunAll]->setEnabled(isThere && !isBusy);
    m_actions[Id::Cancel]->setEnabled(isBusy);
    // The server would roll back instead.
    const bool canCommit = isOpen && !m_tab->session().hasFailedTransaction();
    m_actions[Id::Commit]->setEnabled(canCommit && !isBusy);
    m_actions[Id::RollBack]->setEnabled(isOpen && !isBusy);
    for (const Id id : {Id::NextResult, Id::PreviousResult, Id::CopyAs, Id::SaveCsv})
        m_actions[id]->setEnabled(isThere && !m_tab->resultPages().isEmpty());
    const QSignalBlocker blocker(m_actions[Id::ManualCommit]);
    m_actions[Id::ManualCommit]->setChecked(isThere && m_tab->session().commitsManually());
}
