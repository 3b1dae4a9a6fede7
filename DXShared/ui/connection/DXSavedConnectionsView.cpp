// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/connection/DXSavedConnectionsView.h"

#include "core/DXNotificationCenter.h"
#include "ui/DXLabels.h"
#include "ui/connection/DXSavedConnectionsDelegate.h"
#include "ui/connection/DXSavedConnectionsModel.h"

#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

constexpr int gap = 8;

QLabel *quietLabel()
{
    QLabel *const label = DXLabels::plain();
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

} // namespace

DXSavedConnectionsView::DXSavedConnectionsView(QWidget *parent)
    : QWidget(parent)
    , m_model(new DXSavedConnectionsModel(this))
    , m_search(new QLineEdit)
    , m_tree(new QTreeView)
    , m_stack(new QStackedWidget)
{
    m_search->setPlaceholderText(tr("Search connections"));
    m_search->setAccessibleName(tr("Search the saved connections"));
    m_search->setClearButtonEnabled(true);
    m_search->installEventFilter(this);
    connect(m_search, &QLineEdit::textChanged, this, &DXSavedConnectionsView::rebuild);
    auto *const add = new QToolButton;
    add->setText(QStringLiteral("+"));
    add->setToolTip(tr("New connection"));
    add->setAccessibleName(tr("New connection"));
    add->setFocusPolicy(Qt::StrongFocus);
    connect(add, &QToolButton::clicked, this, &DXSavedConnectionsView::newRequested);
    m_newButton = add;

    m_tree->setModel(m_model);
    m_tree->setItemDelegate(new DXSavedConnectionsDelegate(m_tree));
    m_tree->setAccessibleName(tr("Saved connections"));
    m_tree->setHeaderHidden(true);
    m_tree->setFrameShape(QFrame::NoFrame);
    m_tree->setIndentation(16);
    m_tree->setExpandsOnDoubleClick(false);
    m_tree->setEditTriggers(QTreeView::NoEditTriggers);
    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    m_tree->installEventFilter(this);
    m_stack->addWidget(m_tree);
    m_stack->addWidget(createEmptyPage());

    auto *const top = new QHBoxLayout;
    top->setSpacing(gap);
    top->addWidget(m_search, 1);
    top->addWidget(add);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(gap);
    layout->addLayout(top);
    layout->addWidget(createNotice());
    layout->addWidget(m_stack, 1);
    createActions();
    showPage();
}

DXSavedConnectionsView::~DXSavedConnectionsView() = default;

QWidget *DXSavedConnectionsView::createEmptyPage()
{
    auto *const page = new QWidget;
    m_emptyText = quietLabel();
    m_emptyText->setAlignment(Qt::AlignCenter);
    m_emptyButton = new QPushButton(tr("New connection"));
    m_emptyButton->setAutoDefault(false);
    connect(m_emptyButton, &QPushButton::clicked, this, &DXSavedConnectionsView::newRequested);
    auto *const layout = new QVBoxLayout(page);
    layout->setSpacing(gap);
    layout->addStretch(1);
    layout->addWidget(m_emptyText);
    layout->addWidget(m_emptyButton, 0, Qt::AlignHCenter);
    layout->addStretch(2);
    return page;
}

QWidget *DXSavedConnectionsView::createNotice()
{
    m_notice = new QWidget;
    m_noticeText = quietLabel();
    auto *const again = new QPushButton(tr("Try again"));
    again->setAutoDefault(false);
    connect(again, &QPushButton::clicked, this, &DXSavedConnectionsView::load);
    auto *const layout = new QVBoxLayout(m_notice);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(m_noticeText);
    layout->addWidget(again, 0, Qt::AlignLeft);
    m_notice->hide();
    return m_notice;
}

void DXSavedConnectionsView::setOffersNew(bool yes)
{
    m_offersNew = yes;
    m_newButton->setVisible(yes);
    showPage();
}

void DXSavedConnectionsView::setLists(const QList<SQLRecentConnectionList *> &lists)
{
    m_lists = lists;
    m_observer = DXNotificationCenter::sharedInstance().observe(
        SQLRecentConnectionList::notificationName(),
        [this](const DXNotificationCenter::Notification &notification) {
            const auto isPoster = [&notification](const SQLRecentConnectionList *list) {
                return list == notification.object;
            };
            if (std::any_of(m_lists.begin(), m_lists.end(), isPoster))
                rebuild();
        });
    rebuild();
    load();
}

void DXSavedConnectionsView::load()
{
    m_error = DXError();
    for (SQLRecentConnectionList *const list : std::as_const(m_lists)) {
        if (list->isLoaded())
            continue;
        ++m_loading;
        list->load([view = QPointer(this)](const DXError &error) {
            if (view)
                view->loaded(error);
        });
    }
    showPage();
}

void DXSavedConnectionsView::loaded(const DXError &error)
{
    --m_loading;
    if (error)
        m_error = error;
    showPage();
}

void DXSavedConnectionsView::rebuild()
{
    QList<Record> records;
    for (const SQLRecentConnectionList *const list : std::as_const(m_lists))
        records += list->recentConnections();
    m_isRebuilding = true;
    m_model->show(records, m_search->text());
    m_tree->expandAll();
    // What is searched for is shown, folded or not.
    for (int row = 0; m_search->text().isEmpty() && row < m_model->rowCount(); ++row) {
        const QModelIndex index = m_model->index(row, 0);
        if (m_collapsed.contains(index.data().toString()))
            m_tree->collapse(index);
    }
    m_tree->setCurrentIndex(m_model->indexOfId(m_currentId));
    m_isRebuilding = false;
    updateActions();
    showPage();
}

// While nothing is known yet, nothing is claimed.
void DXSavedConnectionsView::showPage()
{
    const bool isEmpty = m_model->rowCount() == 0;
    const bool isSearching = !m_search->text().isEmpty();
    m_notice->setVisible(bool(m_error));
    m_noticeText->setText(m_error.description());
    m_emptyText->setText(isSearching     ? tr("Nothing matches.")
                         : m_loading > 0 ? QString()
                                         : tr("Connections that you save or use appear here."));
    m_emptyButton->setVisible(m_offersNew && !isSearching && m_loading == 0);
    m_stack->setCurrentIndex(isEmpty ? 1 : 0);
}

void DXSavedConnectionsView::updateActions()
{
    const bool hasRecord = currentRecord() != nullptr;
    for (QAction *const action : {m_connect, m_edit, m_duplicate, m_delete})
        action->setEnabled(hasRecord);
}

DXSavedConnectionsView::Record DXSavedConnectionsView::currentRecord() const
{
    return m_model->recordAt(m_tree->currentIndex());
}

void DXSavedConnectionsView::setCurrentId(const QString &connectionId)
{
    m_currentId = connectionId;
    m_isRebuilding = true;
    m_tree->setCurrentIndex(m_model->indexOfId(connectionId));
    m_isRebuilding = false;
    updateActions();
}

SQLRecentConnectionList *DXSavedConnectionsView::listOf(const Record &record) const
{
    for (SQLRecentConnectionList *const list : m_lists) {
        if (list->recentConnections().contains(record))
            return list;
    }
    return nullptr;
}

bool DXSavedConnectionsView::searchKeyPressed(int key)
{
    switch (key) {
    case Qt::Key_Escape:
        if (m_search->text().isEmpty())
            return false;
        m_search->clear();
        return true;
    case Qt::Key_Down:
        if (!m_tree->currentIndex().isValid())
            m_tree->setCurrentIndex(m_model->firstEntry());
        m_tree->setFocus();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!m_tree->currentIndex().isValid())
            m_tree->setCurrentIndex(m_model->firstEntry());
        connectCurrent();
        return true;
    default:
        return false;
    }
}

bool DXSavedConnectionsView::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (watched == m_search)
        return searchKeyPressed(key);
    if (key != Qt::Key_Return && key != Qt::Key_Enter)
        return QWidget::eventFilter(watched, event);
    const QModelIndex current = m_tree->currentIndex();
    if (current.data(DXSavedConnectionsModel::IsGroupRole).toBool())
        m_tree->setExpanded(current, !m_tree->isExpanded(current));
    else
        connectCurrent();
    return true;
}
