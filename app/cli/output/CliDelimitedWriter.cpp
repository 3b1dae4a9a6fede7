// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/output/CliDelimitedWriter.h"

#include "cli/CliText.h"
#include "cli/output/CliGrid.h"
#include "cli/output/CliOutput.h"

CliDelimitedWriter::CliDelimitedWriter(char separator, Header header, CliOutput &output)
    : m_separator(separator)
    , m_header(header)
    , m_output(output)
{ }

void CliDelimitedWriter::appendShown(QByteArray &line, QByteArrayView text) const
{
    if (m_output.isTerminal())
        line += CliText::printable(QString::fromUtf8(text)).toUtf8();
    else
        appendField(line, text);
}

void CliDelimitedWriter::begin(CliGrid &grid)
{
    QByteArray line;
    if (!m_isFirstGrid)
        line += '\n';
    m_isFirstGrid = false;
    if (m_header == Header::Yes) {
        for (quint32 column = 0; column < grid.columnCount(); ++column) {
            if (column != 0)
                line += m_separator;
            appendShown(line, grid.columnNames()[column].toUtf8());
        }
        line += '\n';
    }
    m_output.write(line);
}

void CliDelimitedWriter::writeRow(CliGrid &grid, qsizetype row)
{
    QByteArray line;
    for (quint32 column = 0; column < grid.columnCount(); ++column) {
        if (column != 0)
            line += m_separator;
        const DXRowStore::Cell cell = grid.cell(row, column);
        if (cell.isNull())
            appendNull(line);
        else
            appendShown(line, cell.view());
    }
    line += '\n';
    m_output.write(line);
}
