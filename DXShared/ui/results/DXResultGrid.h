// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "ui/results/DXResultText.h"

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
    /// The rectangle around the selection; all cells when nothing is selected.
    DXResultText::Area selectedArea() const;
    /// Puts selectedArea() on the clipboard, a single cell as it is. dialect is needed for Insert
    /// only.
    void copy(DXResultText::Format format, const DXResultText::Dialect &dialect = {});

Q_SIGNALS:
    /// The user wants to see a cell whole.
    void valueRequested(const QModelIndex &index);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void fitColumns();

    DXResultModel *const m_model;
};
