// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tree/DXTreeMemory.h"

#include <QTreeView>

DXTreeMemory::DXTreeMemory(QTreeView &tree, QAbstractItemModel &model, int identityRole)
    : QObject(&tree)
    , m_tree(tree)
    , m_identityRole(identityRole)
{
    // Before the tree hears of it, and selects something else.
    connect(&model, &QAbstractItemModel::rowsAboutToBeRemoved, this, &DXTreeMemory::rowsGo);
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this,
            [this] { remember(m_tree.currentIndex()); });
    tree.setModel(&model);
    // After the tree has seen it.
    connect(&model, &QAbstractItemModel::rowsRemoved, this, [this](const QModelIndex &parent) {
        if (m_lost.isNull())
            return;
        // A tree selects a row beside the lost one, and nothing when there is none.
        if (!m_tree.currentIndex().isValid())
            m_tree.setCurrentIndex(parent);
        m_substitute = m_tree.currentIndex();
    });
    connect(&model, &QAbstractItemModel::rowsInserted, this, &DXTreeMemory::restore);
    connect(&model, &QAbstractItemModel::modelReset, this, [this, &model] {
        m_substitute = QModelIndex();
        restore({}, 0, model.rowCount() - 1);
    });
    connect(&tree, &QTreeView::expanded, this,
            [this](const QModelIndex &index) { m_expanded.insert(pathOf(index)); });
    connect(&tree, &QTreeView::collapsed, this,
            [this](const QModelIndex &index) { m_expanded.remove(pathOf(index)); });
}

QString DXTreeMemory::pathOf(const QModelIndex &index) const
{
    QString path;
    for (QModelIndex at = index; at.isValid(); at = at.parent())
        path = at.data(m_identityRole).toString() + QChar(0) + path;
    return path;
}

bool DXTreeMemory::isAtSubstitute() const
{
    return m_tree.currentIndex() == QModelIndex(m_substitute);
}

void DXTreeMemory::rowsGo(const QModelIndex &parent, int first, int last)
{
    QModelIndex at = m_tree.currentIndex();
    while (at.isValid() && at.parent() != parent)
        at = at.parent();
    if (at.isValid() && at.row() >= first && at.row() <= last)
        remember(m_tree.currentIndex());
    else if (!m_lost.isNull() && !isAtSubstitute())
        m_lost.clear();
}

void DXTreeMemory::remember(const QModelIndex &selected)
{
    if (!m_lost.isNull() && isAtSubstitute())
        return;
    m_lost = m_tree.selectionModel()->isSelected(selected) ? pathOf(selected) : QString();
}

void DXTreeMemory::restore(const QModelIndex &parent, int first, int last)
{
    for (int row = first; row <= last; ++row) {
        const QModelIndex index = m_tree.model()->index(row, 0, parent);
        const QString path = pathOf(index);
        if (m_expanded.contains(path))
            m_tree.expand(index);
        if (path == m_lost && isAtSubstitute()) {
            m_lost.clear();
            m_tree.setCurrentIndex(index);
        }
    }
}
