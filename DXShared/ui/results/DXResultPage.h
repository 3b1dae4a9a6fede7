// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXQueryResultDetails.h"
#include "core/DXGlobal.h"
#include "ui/results/DXResultText.h"

#include <QWidget>

#include <functional>
#include <memory>

class DXResultGrid;
class QMenu;

/// The page of one statement's rows. Its grid is made when it is first looked at, so that a batch
/// of a thousand statements does not make a thousand grids. [main]
class DXSHARED_EXPORT DXResultPage final : public QWidget
{
    Q_OBJECT

public:
    /// escapeName quotes a path as the driver does.
    DXResultPage(const std::shared_ptr<const DXQueryResultDetails> &details,
                 const DXResultText::Dialect &dialect, QWidget *parent = nullptr);

    const DXQueryResultDetails &details() const { return *m_details; }
    /// Null before the page was shown.
    DXResultGrid *grid() const { return m_grid; }
    /// Rows that have arrived.
    qsizetype rowCount() const;
    /// The commands on the grid and its selection; the caller owns it.
    std::unique_ptr<QMenu> createMenu();

    void copy(DXResultText::Format format);
    /// Asks for a file and writes all rows into it in the background.
    void saveAsCsv();
    /// Writes all rows to path in the background; a file that was there stays as it is on failure.
    void writeCsv(const QString &path);

Q_SIGNALS:
    /// The user wants to see a value whole.
    void valueRequested(const QString &column, const DXValue &value);
    /// What became of writeCsv(), for the user.
    void saved(bool worked, const QString &message);

protected:
    void showEvent(QShowEvent *event) override;

private:
    const std::shared_ptr<const DXQueryResultDetails> m_details;
    const DXResultText::Dialect m_dialect;
    DXResultGrid *m_grid = nullptr;
};
