// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QCollator>
#include <QList>
#include <QString>

#include <functional>
#include <vector>

/// Sort keys of names that come one by one, so that they are made while the next name is still on
/// its way; the order is DXCollation's. Of one thread.
class DXSHARED_EXPORT DXCollationKeys final
{
public:
    DXCollationKeys();

    void add(const QString &name) { m_keys.push_back(m_collator.sortKey(name)); }
    qsizetype size() const { return static_cast<qsizetype>(m_keys.size()); }

    /// Whether left comes before right, both indexes of names that read alike.
    using Before = std::function<bool(qsizetype left, qsizetype right)>;
    /// The order of the names, as indexes in the order in which they were added. Names that read
    /// alike keep theirs, unless before says otherwise.
    QList<qsizetype> sortedIndexes(const Before &before = {}) const;
    /// The place of each name in that order; names that read alike share theirs.
    QList<qsizetype> ranks() const;

private:
    QCollator m_collator;
    std::vector<QCollatorSortKey> m_keys;
};
