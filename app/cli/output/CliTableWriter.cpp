// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/output/CliTableWriter.h"

#include "cli/CliText.h"
#include "cli/output/CliOutput.h"

#include <algorithm>

namespace
{

// Characters: a window of huge cells is closed earlier.
constexpr qsizetype largestWindow = 4 * 1024 * 1024;

QString cellText(const DXRowStore::Cell &cell)
{
    return cell.isNull() ? QStringLiteral("NULL")
                         : CliText::printable(QString::fromUtf8(cell.view()));
}

} // namespace

CliTableWriter::CliTableWriter(Header header, CliOutput &output)
    : m_header(header)
    , m_output(output)
{ }

void CliTableWriter::begin(CliGrid &grid)
{
    if (!m_isFirstGrid)
        m_output.write("\n");
    m_isFirstGrid = false;
    m_columns.fill(Column(), grid.columnCount());
    m_isWindowOpen = true;
}

void CliTableWriter::writeRow(CliGrid &grid, qsizetype row)
{
    QStringList cells;
    cells.reserve(grid.columnCount());
    for (quint32 column = 0; column < grid.columnCount(); ++column)
        cells.append(cellText(grid.cell(row, column)));
    if (!m_isWindowOpen) {
        writeLine(cells);
        return;
    }
    for (const QString &cell : cells)
        m_windowSize += cell.size();
    m_window.append(cells);
    if (m_window.size() == windowRows || m_windowSize > largestWindow)
        closeWindow(grid);
}

void CliTableWriter::end(CliGrid &grid)
{
    if (m_isWindowOpen)
        closeWindow(grid);
}

void CliTableWriter::closeWindow(const CliGrid &grid)
{
    QStringList header;
    for (const QString &name : grid.columnNames())
        header.append(CliText::printable(name));
    if (m_header == Header::Yes)
        m_window.prepend(header);
    for (quint32 column = 0; column < grid.columnCount(); ++column) {
        Column &known = m_columns[column];
        known.isRightAligned = grid.kind(column) == CliGrid::Kind::Number;
        for (const QStringList &cells : m_window)
            known.width = std::max(known.width, CliText::width(cells[column]));
        known.width = std::min(known.width, widestColumn);
    }
    for (const QStringList &cells : m_window) {
        writeLine(cells);
        if (m_header == Header::Yes && &cells == &m_window.constFirst())
            writeRule();
    }
    m_isWindowOpen = false;
    m_window.clear();
    m_windowSize = 0;
}

void CliTableWriter::writeLine(const QStringList &cells)
{
    QString line;
    for (qsizetype column = 0; column < cells.size(); ++column) {
        const Column &known = m_columns[column];
        const QString blanks(std::max<qsizetype>(known.width - CliText::width(cells[column]), 0),
                             u' ');
        line += column == 0 ? QLatin1String(" ") : QLatin1String(" | ");
        line += known.isRightAligned ? blanks + cells[column] : cells[column] + blanks;
    }
    while (line.endsWith(u' '))
        line.chop(1);
    m_output.write((line + u'\n').toUtf8());
}

void CliTableWriter::writeRule()
{
    QByteArray line;
    for (qsizetype column = 0; column < m_columns.size(); ++column) {
        if (column != 0)
            line += '+';
        line += QByteArray(m_columns[column].width + 2, '-');
    }
    m_output.write(line + '\n');
}
