// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXQueryResultDetails.h"
#include "core/DXGlobal.h"
#include "ui/results/DXResultArea.h"

#include <QTableView>

class DXResultModel;

/// Shows the rows of one statement, from the first that arrives. Cells, rows and columns can be
/// selected and copied. [main]
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

public Q_SLOTS:
    /// Asks for the selection to be copied, as Ctrl+C does.
    void copy();

Q_SIGNALS:
    void copyRequested();
    /// The user wants to see a cell whole.
    void valueRequested(const QModelIndex &index);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void fitColumns();

    DXResultModel *const m_model;
};
