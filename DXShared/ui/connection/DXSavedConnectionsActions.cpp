// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/connection/DXSavedConnectionsView.h"

#include "client/SQLRecentConnection.h"
#include "ui/DXDangerButton.h"
#include "ui/connection/DXSavedConnectionsModel.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QTreeView>

// What can be done with the connections that the view shows.

QAction *DXSavedConnectionsView::addKey(const QString &text, const QKeySequence &key,
                                        void (DXSavedConnectionsView::*act)())
{
    auto *const action = new QAction(text, this);
    action->setShortcut(key);
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, act);
    m_tree->addAction(action);
    return action;
}

void DXSavedConnectionsView::createActions()
{
    using View = DXSavedConnectionsView;
    // Return is the tree's own: it also folds groups.
    m_connect = new QAction(tr("&Connect"), this);
    connect(m_connect, &QAction::triggered, this, &View::connectCurrent);
    m_edit = addKey(tr("&Edit…"), QKeySequence(Qt::Key_F2), &View::editCurrent);
    m_duplicate =
        addKey(tr("D&uplicate"), QKeySequence(Qt::CTRL | Qt::Key_D), &View::duplicateCurrent);
    m_delete = addKey(tr("&Delete…"), QKeySequence(Qt::Key_Delete), &View::deleteCurrent);
    auto *const find = new QAction(this);
    find->setShortcut(QKeySequence::Find);
    find->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(find, &QAction::triggered, m_search, [this] { m_search->setFocus(); });
    addAction(find);

    connect(m_tree, &QTreeView::doubleClicked, this, &View::connectCurrent);
    connect(m_tree, &QTreeView::customContextMenuRequested, this, [this](const QPoint &position) {
        if (!currentRecord())
            return;
        QMenu *const menu = createMenu().release();
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(m_tree->viewport()->mapToGlobal(position));
    });
    connect(m_tree->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
        updateActions();
        if (m_isRebuilding)
            return;
        const Record record = currentRecord();
        m_currentId = record ? record->connectionId() : QString();
        Q_EMIT currentChanged(record);
    });
    const auto remember = [this](const QModelIndex &index, bool isCollapsed) {
        if (m_isRebuilding)
            return;
        m_collapsed.removeAll(index.data().toString());
        if (isCollapsed)
            m_collapsed.append(index.data().toString());
    };
    connect(m_tree, &QTreeView::collapsed, this,
            [remember](const QModelIndex &index) { remember(index, true); });
    connect(m_tree, &QTreeView::expanded, this,
            [remember](const QModelIndex &index) { remember(index, false); });
}

std::unique_ptr<QMenu> DXSavedConnectionsView::createMenu()
{
    auto menu = std::make_unique<QMenu>(this);
    menu->addAction(m_connect);
    menu->setDefaultAction(m_connect);
    menu->addSeparator();
    menu->addActions({m_edit, m_duplicate});
    menu->addSeparator();
    menu->addAction(m_delete);
    return menu;
}

void DXSavedConnectionsView::connectCurrent()
{
    if (const Record record = currentRecord())
        Q_EMIT connectRequested(record);
}

void DXSavedConnectionsView::editCurrent()
{
    if (const Record record = currentRecord())
        Q_EMIT editRequested(record);
}

void DXSavedConnectionsView::duplicateCurrent()
{
    const Record record = currentRecord();
    SQLRecentConnectionList *const list = listOf(record);
    if (!list)
        return;
    const Record copy = list->createRecord();
    copy->copyFrom(*record);
    copy->setConnectionId(SQLRecentConnection::createConnectionId());
    const QString name =
        record->alias().isEmpty() ? DXSavedConnectionsModel::nameOf(*record) : record->alias();
    copy->setAlias(tr("%1 (copy)").arg(name));
    m_currentId = copy->connectionId();
    list->updateRecentConnection(copy, failureHandler());
    Q_EMIT editRequested(copy);
}

void DXSavedConnectionsView::deleteCurrent()
{
    const Record record = currentRecord();
    if (!record)
        return;
    auto *const box = new QMessageBox(this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    box->setTextFormat(Qt::PlainText);
    box->setWindowTitle(tr("Delete saved connection"));
    box->setText(tr("Delete the saved connection \"%1\"?")
                     .arg(record->alias().isEmpty() ? DXSavedConnectionsModel::nameOf(*record)
                                                    : record->alias()));
    box->setInformativeText(tr("%1\nIts settings and its password are forgotten. The database "
                               "itself is not touched.")
                                .arg(DXSavedConnectionsModel::secondaryTextOf(*record)));
    box->setDefaultButton(box->addButton(QMessageBox::Cancel));
    auto *const confirm = new DXDangerButton(tr("&Delete"), box);
    box->addButton(confirm, QMessageBox::DestructiveRole);
    connect(confirm, &QPushButton::clicked, this, [this, record] { remove(record); });
    box->open();
}

void DXSavedConnectionsView::remove(const Record &record)
{
    SQLRecentConnectionList *const list = listOf(record);
    if (!list)
        return;
    list->removeConnection(record, failureHandler());
    m_tree->setFocus();
}

SQLRecentConnectionList::Done DXSavedConnectionsView::failureHandler()
{
    return [view = QPointer(this)](const DXError &error) {
        if (!view || !error)
            return;
        view->m_error = error;
        view->showPage();
    };
}
