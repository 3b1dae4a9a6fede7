// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tree/DXDatabaseTreeView.h"

#include "dispatch/DXDispatch.h"
#include "tree/DXMenu.h"
#include "ui/DXFailureList.h"
#include "ui/tree/DXDatabaseTreeItemDelegate.h"
#include "ui/tree/DXDatabaseTreeModel.h"
#include "ui/tree/DXTreeMemory.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QStackedWidget>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>

namespace
{

// Only so many hits are unfolded at once; more are better searched again.
constexpr qsizetype unfoldedHits = 1000;

QKeySequence shortcutOf(DXMenu::Key key)
{
    switch (key) {
    case DXMenu::Key::Drop:
        return Qt::Key_Delete;
    case DXMenu::Key::Rename:
        return Qt::Key_F2;
    case DXMenu::Key::None:
        break;
    }
    return {};
}

// Chooses the item of entry's menu that has this key; nothing when none has, or it is disabled.
void choose(DXDatabaseTreeEntry &entry, DXMenu::Key key)
{
    const DXMenu menu = entry.menu();
    const DXMenu::Item *const item = menu.itemForKey(key);
    if (item && item->action)
        item->action();
}

void fill(QMenu &menu, const std::vector<DXMenu::Item> &items)
{
    for (const DXMenu::Item &item : items) {
        if (item.isSeparator()) {
            menu.addSeparator();
        } else if (!item.submenu.empty()) {
            fill(*menu.addMenu(item.title), item.submenu);
        } else {
            QAction *const action = menu.addAction(item.title);
            action->setEnabled(bool(item.action));
            // Only told here: the tree acts on the keys itself.
            action->setShortcut(shortcutOf(item.key));
            action->setShortcutVisibleInContextMenu(true);
            if (item.action)
                QObject::connect(action, &QAction::triggered, item.action);
        }
    }
}

} // namespace

DXDatabaseTreeView::DXDatabaseTreeView(DXDatabaseTreeViewControllerDelegate &delegate,
                                       QWidget *parent)
    : QWidget(parent)
    , m_delegate(delegate)
    , m_model(new DXDatabaseTreeModel(this))
    , m_results(new DXDatabaseTreeModel(this))
    , m_searchField(new QLineEdit)
    , m_failures(new DXFailureList)
    , m_stack(new QStackedWidget)
    , m_tree(createTree(*m_model))
    , m_resultsTree(createTree(*m_results))
    , m_nothingFound(new QWidget)
    , m_nothingFoundText(new QLabel)
{
    m_searchField->setPlaceholderText(tr("Search"));
    m_searchField->setAccessibleName(tr("Search tables, views and functions"));
    m_searchField->setClearButtonEnabled(true);
    m_searchField->installEventFilter(this);
    connect(m_searchField, &QLineEdit::textChanged, this, &DXDatabaseTreeView::search);
    connect(m_model, &DXDatabaseTreeModel::searchResultsUpdated, this,
            [this] { search(m_searchField->text()); });
    connect(m_model, &DXDatabaseTreeModel::searchResultsUpdated, this,
            &DXDatabaseTreeView::searchResultsUpdated);
    m_tree->setAccessibleName(tr("Catalogue"));
    m_resultsTree->setAccessibleName(tr("Search results"));
    connect(m_results, &QAbstractItemModel::rowsInserted, this, &DXDatabaseTreeView::unfoldResults);
    fillNothingFound();
    m_stack->addWidget(m_tree);
    m_stack->addWidget(m_resultsTree);

    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto *const field = new QVBoxLayout;
    field->setContentsMargins(8, 8, 8, 8);
    field->addWidget(m_searchField);
    layout->addLayout(field);
    layout->addWidget(m_failures);
    layout->addWidget(m_nothingFound);
    layout->addWidget(m_stack, 1);
    setFocusProxy(m_tree);

    m_animation.setInterval(std::chrono::milliseconds(60));
    connect(&m_animation, &QTimer::timeout, this, [this] { shownTree()->viewport()->update(); });
}

DXDatabaseTreeView::~DXDatabaseTreeView() = default;

void DXDatabaseTreeView::fillNothingFound()
{
    m_nothingFoundText->setTextFormat(Qt::PlainText);
    m_nothingFoundText->setWordWrap(true);
    m_nothingFoundText->setForegroundRole(QPalette::PlaceholderText);
    auto *const again = new QPushButton(tr("Read the names again"));
    again->setAutoDefault(false);
    connect(again, &QPushButton::clicked, this, &DXDatabaseTreeView::refresh);
    auto *const column = new QVBoxLayout(m_nothingFound);
    column->setContentsMargins(12, 8, 12, 8);
    column->setSpacing(8);
    column->addWidget(m_nothingFoundText);
    column->addWidget(again, 0, Qt::AlignLeft);
    m_nothingFound->hide();
}

QTreeView *DXDatabaseTreeView::createTree(DXDatabaseTreeModel &model)
{
    auto *const tree = new QTreeView;
    new DXTreeMemory(*tree, model, DXDatabaseTreeModel::IdentityRole);
    tree->setItemDelegate(new DXDatabaseTreeItemDelegate(tree));
    tree->setHeaderHidden(true);
    tree->setUniformRowHeights(true);
    tree->setIndentation(16);
    tree->setFrameShape(QFrame::NoFrame);
    tree->setDragEnabled(true);
    tree->setExpandsOnDoubleClick(false);
    tree->setContextMenuPolicy(Qt::CustomContextMenu);
    tree->installEventFilter(this);
    connect(tree, &QTreeView::customContextMenuRequested, this, &DXDatabaseTreeView::showMenu);
    connect(tree, &QTreeView::doubleClicked, this, [&model, tree](const QModelIndex &index) {
        const auto entry = model.entry(index);
        if (entry->canHaveChildren() && !tree->isExpanded(index))
            tree->expand(index);
        entry->onDoubleClicked();
    });
    connect(&model, &DXDatabaseTreeModel::loadingChanged, this,
            &DXDatabaseTreeView::loadingChanged);
    connect(&model, &DXDatabaseTreeModel::loadEnded, this, &DXDatabaseTreeView::showFailure);
    connect(&model, &DXDatabaseTreeModel::modelReset, this, &DXDatabaseTreeView::settleFailures);
    connect(&model, &DXDatabaseTreeModel::rowsRemoved, this, &DXDatabaseTreeView::settleFailures);
    return tree;
}

QTreeView *DXDatabaseTreeView::shownTree() const
{
    return m_stack->currentWidget() == m_tree ? m_tree : m_resultsTree;
}

const DXDatabaseTreeEntry::List &DXDatabaseTreeView::roots() const
{
    return m_model->roots();
}

void DXDatabaseTreeView::addRoot(const std::shared_ptr<DXDatabaseTreeEntry> &root)
{
    DXDatabaseTreeEntry::List roots = m_model->roots();
    roots.append(root);
    m_model->setRoots(roots);
    m_tree->expand(m_model->indexOf(*root));
}

void DXDatabaseTreeView::removeRoot(const std::shared_ptr<DXDatabaseTreeEntry> &root)
{
    DXDatabaseTreeEntry::List roots = m_model->roots();
    roots.removeOne(root);
    m_model->setRoots(roots);
}

std::shared_ptr<DXDatabaseTreeEntry> DXDatabaseTreeView::currentlySelectedDatabaseTreeEntry() const
{
    const QTreeView *const tree = shownTree();
    const auto *const model = static_cast<const DXDatabaseTreeModel *>(tree->model());
    return tree->selectionModel()->hasSelection() ? model->entry(tree->currentIndex()) : nullptr;
}

DXDatabaseTreeEntry::List DXDatabaseTreeView::allRoots() const
{
    return m_model->roots() + m_results->roots();
}

void DXDatabaseTreeView::deselectAll()
{
    // A current row without a selection would pass the selection on when it goes.
    shownTree()->selectionModel()->clear();
}

void DXDatabaseTreeView::reloadData()
{
    m_model->reload();
    m_results->reload();
}

void DXDatabaseTreeView::doRefreshDatabaseTreeEntry(
    const std::shared_ptr<DXDatabaseTreeEntry> &entry)
{
    for (auto node = entry; node; node = node->parent()) {
        if (node->canHaveChildren()) {
            node->loadEntriesAsync(DXDatabaseTreeEntry::Reload::Force);
            return;
        }
    }
}

void DXDatabaseTreeView::refresh()
{
    const auto entry = currentlySelectedDatabaseTreeEntry();
    if (entry && shownTree() == m_tree) {
        doRefreshDatabaseTreeEntry(entry);
        return;
    }
    for (const auto &root : m_model->roots())
        doRefreshDatabaseTreeEntry(root);
}

std::unique_ptr<QMenu> DXDatabaseTreeView::createMenu(DXDatabaseTreeEntry &entry)
{
    const DXMenu described = entry.menu();
    auto menu = std::make_unique<QMenu>(this);
    fill(*menu, described.items());
    if (entry.loadFailure())
        addFailureItems(*menu, entry);
    return menu->isEmpty() ? nullptr : std::move(menu);
}

void DXDatabaseTreeView::addFailureItems(QMenu &menu, DXDatabaseTreeEntry &entry)
{
    if (!menu.isEmpty())
        menu.addSeparator();
    menu.addAction(tr("Copy error"), this, [text = entry.loadFailure().description().trimmed()] {
        QGuiApplication::clipboard()->setText(text);
    });
    menu.addAction(tr("Try again"), this,
                   [this, entry = entry.shared_from_this()] { doRefreshDatabaseTreeEntry(entry); });
}

void DXDatabaseTreeView::showMenu(const QPoint &position)
{
    QTreeView *const tree = shownTree();
    const auto entry =
        static_cast<DXDatabaseTreeModel *>(tree->model())->entry(tree->indexAt(position));
    if (!entry)
        return;
    if (auto menu = createMenu(*entry)) {
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu.release()->popup(tree->viewport()->mapToGlobal(position));
    }
}

bool DXDatabaseTreeView::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto &key = static_cast<const QKeyEvent &>(*event);
    if (watched != m_searchField)
        return keyPressed(key.key(), key.modifiers()) || QWidget::eventFilter(watched, event);
    if (key.key() == Qt::Key_Escape && !m_searchField->text().isEmpty()) {
        m_searchField->clear();
        return true;
    }
    if (key.key() == Qt::Key_Down) {
        shownTree()->setFocus();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool DXDatabaseTreeView::keyPressed(int key, Qt::KeyboardModifiers modifiers)
{
    const auto entry = currentlySelectedDatabaseTreeEntry();
    if (!entry)
        return false;
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        entry->cmdDown();
    } else if (key == Qt::Key_F4) {
        entry->cmdRight();
    } else if (key == Qt::Key_Delete && modifiers == Qt::NoModifier) {
        choose(*entry, DXMenu::Key::Drop);
    } else if (key == Qt::Key_F2) {
        choose(*entry, DXMenu::Key::Rename);
    } else if (key == Qt::Key_R && modifiers == Qt::ControlModifier) {
        doRefreshDatabaseTreeEntry(entry);
    } else if (key == Qt::Key_C && modifiers == Qt::ControlModifier) {
        QGuiApplication::clipboard()->setText(entry->canHaveChildren() ? entry->dragDropString()
                                                                       : entry->displayName());
    } else {
        return false;
    }
    return true;
}

void DXDatabaseTreeView::loadingChanged()
{
    const bool isLoading = m_model->loadingCount() + m_results->loadingCount() > 0;
    if (isLoading && !m_animation.isActive())
        m_animation.start();
    else if (!isLoading)
        m_animation.stop();
}

// The mark beside the entry may be out of sight.
void DXDatabaseTreeView::showFailure(const std::shared_ptr<DXDatabaseTreeEntry> &entry)
{
    const QString about = QString::number(reinterpret_cast<quintptr>(entry.get()));
    const DXError failure = entry->loadFailure();
    if (!failure) {
        if (m_failed.remove(about))
            m_failures->settle(about);
        return;
    }
    m_failed.insert(about, entry);
    const auto tryAgain = [this, failed = std::weak_ptr(entry)] {
        if (const auto again = failed.lock())
            doRefreshDatabaseTreeEntry(again);
    };
    m_failures->showFailure(about,
                            tr("Could not load \"%1\". What is shown of it may be out of date.")
                                .arg(entry->displayName()),
                            failure.description().trimmed(), {{tr("Try again"), tryAgain}});
}

// Nobody asks any more about what is not shown.
void DXDatabaseTreeView::settleFailures()
{
    for (auto failed = m_failed.begin(); failed != m_failed.end();) {
        const auto entry = failed->lock();
        if (entry && (m_model->indexOf(*entry).isValid() || m_results->indexOf(*entry).isValid())) {
            ++failed;
        } else {
            m_failures->settle(failed.key());
            failed = m_failed.erase(failed);
        }
    }
}

void DXDatabaseTreeView::search(const QString &text)
{
    const quint64 number = ++m_searchNumber;
    if (text.isEmpty()) {
        m_stack->setCurrentWidget(m_tree);
        m_nothingFound->hide();
        m_results->setRoots({});
        return;
    }
    DXDispatch::background([view = QPointer(this), number, text, roots = m_model->roots()] {
        DXDatabaseTreeEntry::List results;
        for (const auto &root : roots) {
            if (const auto found = root->copyWithSearchResults(text))
                results.append(found);
        }
        DXDispatch::main([view, number, results] {
            if (view && view->m_searchNumber == number)
                view->showResults(results);
        });
    });
}

void DXDatabaseTreeView::showResults(const DXDatabaseTreeEntry::List &results)
{
    m_results->setRoots(results);
    m_stack->setCurrentWidget(m_resultsTree);
    m_nothingFoundText->setText(
        tr("No table, view or function has \"%1\" in its name.").arg(m_searchField->text()));
    m_nothingFound->setVisible(results.isEmpty());
    m_shownHits = 0;
    for (const auto &root : results)
        m_resultsTree->expand(m_results->indexOf(*root));
}

// The rows of a root are databases, and theirs are the hits; they come one event after they were
// unfolded.
void DXDatabaseTreeView::unfoldResults(const QModelIndex &parent, int first, int last)
{
    const bool isRoot = parent.isValid() && !parent.parent().isValid();
    for (int row = first; isRoot && row <= last && m_shownHits < unfoldedHits; ++row)
        m_resultsTree->expand(m_results->index(row, 0, parent));
    if (parent.parent().isValid() && !parent.parent().parent().isValid())
        m_shownHits += last - first + 1;
}
