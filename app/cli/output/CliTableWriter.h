// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/output/CliGrid.h"
#include "cli/output/CliGridWriter.h"

#include <QList>
#include <QStringList>

/// An aligned table. The first rows, up to a thousand, tell how wide the columns are; those behind
/// them are printed as they come, so that memory stays bounded. No cell is cut: one wider than its
/// column pushes the rest of its line. Numbers stand right. NULL is written out, empty text is
/// blank.
class CliTableWriter final : public CliGridWriter
{
public:
    static constexpr qsizetype windowRows = 1000;
    /// No column is made wider than this.
    static constexpr qsizetype widestColumn = 120;

    CliTableWriter(Header header, CliOutput &output);

    void begin(CliGrid &grid) override;
    void writeRow(CliGrid &grid, qsizetype row) override;
    void end(CliGrid &grid) override;

private:
    struct Column
    {
        qsizetype width = 0;
        bool isRightAligned = false;
    };

    void closeWindow(const CliGrid &grid);
    void writeLine(const QStringList &cells);
    void writeRule();

    const Header m_header;
    CliOutput &m_output;
    QList<Column> m_columns;
    bool m_isFirstGrid = true;
    bool m_isWindowOpen = true;
    QList<QStringList> m_window;
    qsizetype m_windowSize = 0;
};
