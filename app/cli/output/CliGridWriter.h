// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

#include <memory>
#include <optional>

class CliGrid;
class CliOutput;

/// How grids are printed.
enum class CliFormat {
    Table,
    Csv,
    JsonLines,
    Tsv,
};

/// Prints the grids of a batch, one after the other, row by row as they come. Executing thread
/// only.
class CliGridWriter
{
public:
    /// Whether grids begin with the names of their columns.
    enum class Header { No, Yes };

    virtual ~CliGridWriter();

    /// The format called name, such as "csv".
    static std::optional<CliFormat> formatNamed(QStringView name);
    static std::unique_ptr<CliGridWriter> create(CliFormat format, Header header,
                                                 CliOutput &output);

    /// A grid begins; its columns are known.
    virtual void begin(CliGrid &grid) = 0;
    /// The next row of the grid that was begun; it may be discarded afterwards.
    virtual void writeRow(CliGrid &grid, qsizetype row) = 0;
    /// No further row comes.
    virtual void end(CliGrid &grid);

protected:
    CliGridWriter() = default;

private:
    Q_DISABLE_COPY_MOVE(CliGridWriter)
};
