// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QList>

class QItemSelection;

/// Cells of a result in the order in which they are read: rows from the top, columns as the user
/// sees them. Counted from 0. [any]
struct DXSHARED_EXPORT DXResultArea
{
    /// Neighbouring rows that have cells of the same columns in the area.
    struct Block
    {
        qsizetype firstRow = 0;
        qsizetype rowCount = 0;
        /// In the order of the area's.
        QList<int> columns = {};

        bool operator==(const Block &) const = default;
    };

    /// Every column that has a cell in the area, in order.
    QList<int> columns;
    QList<Block> blocks = {};

    qsizetype rowCount() const;
    qsizetype cellCount() const;

    /// The first rows whole; order holds the columns as they are seen.
    static DXResultArea all(qsizetype rowCount, const QList<int> &order);
    /// What is selected and nothing else, however scattered it is.
    static DXResultArea selected(const QItemSelection &selection, const QList<int> &order);
};
