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
class DXResultOutput;
class QMenu;

/// The page of one statement's rows. Its grid is made when it is first looked at, so that a batch
/// of a thousand statements does not make a thousand grids. [main]
class DXSHARED_EXPORT DXResultPage final : public QWidget
{
    Q_OBJECT

public:
    struct Init
    {
        std::shared_ptr<const DXQueryResultDetails> details;
        /// escapeName quotes a path as the driver does.
        DXResultText::Dialect dialect;
        /// Outlives the page.
        DXResultOutput &output;
    };
    explicit DXResultPage(const Init &init, QWidget *parent = nullptr);

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
    /// Has all rows written to path, by what the page was made with.
    void writeCsv(const QString &path);

Q_SIGNALS:
    /// The user wants to see a value whole.
    void valueRequested(const QString &column, const DXValue &value);

protected:
    void showEvent(QShowEvent *event) override;

private:
    const std::shared_ptr<const DXQueryResultDetails> m_details;
    const DXResultText::Dialect m_dialect;
    DXResultOutput &m_output;
    DXResultGrid *m_grid = nullptr;
};
