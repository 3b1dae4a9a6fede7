// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/results/DXResultArea.h"

#include <QItemSelection>

#include <algorithm>

namespace
{

using Ranges = QList<QItemSelectionRange>;

QList<int> columnsOf(const Ranges &ranges, const QList<int> &order)
{
    const auto isIn = [&ranges](int column) {
        return std::ranges::any_of(ranges, [column](const QItemSelectionRange &range) {
            return range.left() <= column && column <= range.right();
        });
    };
    QList<int> columns;
    std::ranges::copy_if(order, std::back_inserter(columns), isIn);
    return columns;
}

// The rows at which a range begins or has ended.
QList<int> edgesOf(const Ranges &ranges)
{
    QList<int> edges;
    for (const QItemSelectionRange &range : ranges)
        edges << range.top() << range.bottom() + 1;
    std::ranges::sort(edges);
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    return edges;
}

void append(QList<DXResultArea::Block> &blocks, DXResultArea::Block block)
{
    if (!blocks.isEmpty() && blocks.constLast().columns == block.columns
        && blocks.constLast().firstRow + blocks.constLast().rowCount == block.firstRow)
        blocks.last().rowCount += block.rowCount;
    else
        blocks.append(std::move(block));
}

} // namespace

qsizetype DXResultArea::rowCount() const
{
    qsizetype count = 0;
    for (const Block &block : blocks)
        count += block.rowCount;
    return count;
}

qsizetype DXResultArea::cellCount() const
{
    qsizetype count = 0;
    for (const Block &block : blocks)
        count += block.rowCount * block.columns.size();
    return count;
}

DXResultArea DXResultArea::all(qsizetype rowCount, const QList<int> &order)
{
    return {.columns = order, .blocks = {{.rowCount = rowCount, .columns = order}}};
}

DXResultArea DXResultArea::selected(const QItemSelection &selection, const QList<int> &order)
{
    Ranges waiting = selection;
    std::ranges::sort(waiting, std::ranges::greater(), &QItemSelectionRange::top);
    DXResultArea area{.columns = columnsOf(waiting, order)};
    const QList<int> edges = edgesOf(waiting);
    Ranges current;
    for (qsizetype at = 0; at + 1 < edges.size(); ++at) {
        const int row = edges[at];
        current.removeIf([row](const auto &range) { return range.bottom() < row; });
        while (!waiting.isEmpty() && waiting.constLast().top() == row)
            current.append(waiting.takeLast());
        if (!current.isEmpty())
            append(area.blocks, {.firstRow = row,
                                 .rowCount = edges[at + 1] - row,
                                 .columns = columnsOf(current, area.columns)});
    }
    return area;
}
