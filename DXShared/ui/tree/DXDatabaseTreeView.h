// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "tree/DXDatabaseTreeEntry.h"
#include "tree/DXDatabaseTreeViewController.h"

#include <QHash>
#include <QTimer>
#include <QWidget>

class DXDatabaseTreeModel;
class DXFailureList;
class DXMenu;
class QLabel;
class QLineEdit;
class QMenu;
class QStackedWidget;
class QTreeView;

/// The catalogue trees of the open connections, with a search field above: while something stands
/// in it, copies of the trees that hold only what matches are shown in their place. [main]
class DXSHARED_EXPORT DXDatabaseTreeView final : public QWidget, public DXDatabaseTreeViewController
{
    Q_OBJECT

public:
    /// delegate outlives the view.
    explicit DXDatabaseTreeView(DXDatabaseTreeViewControllerDelegate &delegate,
                                QWidget *parent = nullptr);
    ~DXDatabaseTreeView() override;

    /// Adds a tree below the others and begins to load it.
    void addRoot(const std::shared_ptr<DXDatabaseTreeEntry> &root);
    void removeRoot(const std::shared_ptr<DXDatabaseTreeEntry> &root);
    const DXDatabaseTreeEntry::List &roots() const;
    /// What could not be refreshed, above the trees.
    DXFailureList &failures() const { return *m_failures; }

    /// The menu of entry, or null when it has nothing to offer; the caller owns it.
    std::unique_ptr<QMenu> createMenu(DXDatabaseTreeEntry &entry);

    /// Loads the selected entry again; all roots when none is, or while a search is shown.
    void refresh();

    std::shared_ptr<DXDatabaseTreeEntry> currentlySelectedDatabaseTreeEntry() const override;
    DXDatabaseTreeEntry::List allRoots() const override;
    void deselectAll() override;
    void reloadData() override;
    void doRefreshDatabaseTreeEntry(const std::shared_ptr<DXDatabaseTreeEntry> &entry) override;
    DXDatabaseTreeViewControllerDelegate &delegate() override { return m_delegate; }

Q_SIGNALS:
    /// What a search of the roots finds has changed.
    void searchResultsUpdated();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QTreeView *createTree(DXDatabaseTreeModel &model);
    QTreeView *shownTree() const;
    void fillNothingFound();
    bool keyPressed(int key, Qt::KeyboardModifiers modifiers);
    void addFailureItems(QMenu &menu, DXDatabaseTreeEntry &entry);
    void showMenu(const QPoint &position);
    void loadingChanged();
    void showFailure(const std::shared_ptr<DXDatabaseTreeEntry> &entry);
    void settleFailures();
    void search(const QString &text);
    void showResults(const DXDatabaseTreeEntry::List &results);
    void unfoldResults(const QModelIndex &parent, int first, int last);

    DXDatabaseTreeViewControllerDelegate &m_delegate;
    DXDatabaseTreeModel *const m_model;
    DXDatabaseTreeModel *const m_results;
    QLineEdit *const m_searchField;
    DXFailureList *const m_failures;
    QStackedWidget *const m_stack;
    QTreeView *const m_tree;
    QTreeView *const m_resultsTree;
    QWidget *const m_nothingFound;
    QLabel *const m_nothingFoundText;
    qsizetype m_shownHits = 0;
    QTimer m_animation;
    // The entries that failures tell of, by what names those.
    QHash<QString, std::weak_ptr<DXDatabaseTreeEntry>> m_failed;
    quint64 m_searchNumber = 0;
};
