// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QObject>
#include <QPersistentModelIndex>
#include <QSet>
#include <QString>

class QAbstractItemModel;
class QTreeView;

/// Keeps a tree unfolded and selected as the user left it although its rows are replaced by others
/// that stand for the same things: rows are told apart by what a role says about them and about
/// those above. Owned by the tree. [main]
class DXSHARED_EXPORT DXTreeMemory final : public QObject
{
    Q_OBJECT

public:
    /// Makes model the tree's.
    DXTreeMemory(QTreeView &tree, QAbstractItemModel &model, int identityRole);

private:
    QString pathOf(const QModelIndex &index) const;
    bool isAtSubstitute() const;
    void rowsGo(const QModelIndex &parent, int first, int last);
    void remember(const QModelIndex &selected);
    void restore(const QModelIndex &parent, int first, int last);

    QTreeView &m_tree;
    const int m_identityRole;
    QSet<QString> m_expanded;
    // What was selected when its row went, until it is back or the user selects something else than
    // what the tree selected in its place.
    QString m_lost;
    QPersistentModelIndex m_substitute;
};
