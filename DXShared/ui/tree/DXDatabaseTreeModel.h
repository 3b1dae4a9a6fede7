// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "tree/DXDatabaseTreeEntry.h"

#include <QAbstractItemModel>
#include <QElapsedTimer>
#include <QHash>

#include <memory>
#include <vector>

/// Catalogue trees as an item model: one column, children loaded when they are first asked for.
/// What a load brings replaces only the rows that changed, so what is expanded stays so. [main]
class DXSHARED_EXPORT DXDatabaseTreeModel final : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Role {
        /// The secondary text.
        DetailsRole = Qt::UserRole,
        /// Whether the entry's children have been loading for a noticeable time.
        LoadingRole,
        /// Why the children shown are old ones; null when they are not.
        FailureRole,
        /// A text that is equal for entries which stand for the same thing, before and after a
        /// load, and different among the children of one.
        IdentityRole
    };

    explicit DXDatabaseTreeModel(QObject *parent = nullptr);
    ~DXDatabaseTreeModel() override;

    /// Shows other trees, and becomes the delegate of all their entries: a search's copies come
    /// with their originals'.
    void setRoots(const DXDatabaseTreeEntry::List &roots);
    const DXDatabaseTreeEntry::List &roots() const { return m_roots; }
    /// Nothing for an invalid index.
    std::shared_ptr<DXDatabaseTreeEntry> entry(const QModelIndex &index) const;
    /// Invalid while the entry is not shown.
    QModelIndex indexOf(const DXDatabaseTreeEntry &entry) const;
    /// How many of the entries shown are loading.
    int loadingCount() const;
    /// Takes over what the entries hold now.
    void reload();

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;

Q_SIGNALS:
    /// A load of entry began or ended.
    void loadingChanged();
    /// A load of an entry that is shown ended, well or not.
    void loadEnded(const std::shared_ptr<DXDatabaseTreeEntry> &entry);
    /// What a search of the roots finds has changed.
    void searchResultsUpdated();

private:
    class Observer;
    struct Node
    {
        std::shared_ptr<DXDatabaseTreeEntry> entry = {};
        Node *parent = nullptr;
        int row = 0;
        bool isFetched = false;
        QElapsedTimer loading = {};
        std::vector<std::unique_ptr<Node>> children = {};
    };

    Node *nodeOf(const QModelIndex &index) const;
    QModelIndex indexOf(const Node &node) const;
    void observe(DXDatabaseTreeEntry &entry) const;
    void entryChanged(const std::shared_ptr<DXDatabaseTreeEntry> &entry);
    void synchronize(Node &node);
    void dropRows(Node &node, qsizetype from, qsizetype count);
    void addRows(Node &node, qsizetype from, const DXDatabaseTreeEntry::List &entries);
    static bool isSlow(const Node &node);
    void forget(const Node &node);
    static void renumber(Node &node, std::size_t from);

    DXDatabaseTreeEntry::List m_roots;
    std::unique_ptr<Node> m_top;
    QHash<const DXDatabaseTreeEntry *, Node *> m_nodes;
    std::shared_ptr<Observer> m_observer;
};
