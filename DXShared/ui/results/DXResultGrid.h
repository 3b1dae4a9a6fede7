// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXQueryResultDetails.h"
#include "core/DXGlobal.h"
#include "ui/results/DXResultArea.h"

#include <QTableView>

class DXResultModel;

/// Shows the rows of one statement, from the first that arrives. Cells, rows and columns can be
/// selected and copied. Ctrl with an arrow goes to the end of the row or column, with Home and End
/// to the first and last cell, and Shift selects up to there. [main]
class DXSHARED_EXPORT DXResultGrid final : public QTableView
{
    Q_OBJECT

public:
    explicit DXResultGrid(const std::shared_ptr<const DXQueryResultDetails> &details,
                          QWidget *parent = nullptr);

    DXResultModel &resultModel() const { return *m_model; }
    /// The selected cells, columns in the order in which they are seen: of scattered ones the rows
    /// and columns that hold any, and nothing that is not selected. All cells when none is.
    DXResultArea selectedArea() const;
    /// What a double click on a heading's edge makes of the column; never more than is seen of the
    /// grid.
    int sizeHintForColumn(int column) const override;

public Q_SLOTS:
    /// Asks for the selection to be copied, as Ctrl+C does.
    void copy();

Q_SIGNALS:
    void copyRequested();
    /// The user wants to see a cell whole.
    void valueRequested(const QModelIndex &index);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index,
                                                         const QEvent *event) const override;

private:
    void fitColumns();

    DXResultModel *const m_model;
};
