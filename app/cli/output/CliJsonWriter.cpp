// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/output/CliJsonWriter.h"

#include "cli/output/CliGrid.h"
#include "cli/output/CliOutput.h"
#include "core/DXFieldText.h"

#include <QSet>

namespace
{

void appendCell(QByteArray &line, CliGrid::Kind kind, const DXRowStore::Cell &cell)
{
    if (cell.isNull())
        line += "null";
    else if (kind == CliGrid::Kind::Boolean)
        line += cell.view() == "True" ? "true" : "false";
    // NaN and Infinity are no numbers to JSON.
    else if (kind == CliGrid::Kind::Number && cell.view().back() >= '0'
             && cell.view().back() <= '9')
        line += cell.view();
    else
        DXFieldText::appendJson(line, cell.view());
}

} // namespace

CliJsonWriter::CliJsonWriter(CliOutput &output)
    : m_output(output)
{ }

void CliJsonWriter::begin(CliGrid &grid)
{
    m_members.clear();
    const QStringList &names = grid.columnNames();
    QSet<QString> taken(names.begin(), names.end());
    QSet<QString> used;
    for (const QString &name : names) {
        QString key = name;
        if (used.contains(name)) {
            for (int number = 2; taken.contains(key); ++number)
                key = name + u'_' + QString::number(number);
            taken.insert(key);
        }
        used.insert(name);
        QByteArray member;
        DXFieldText::appendJson(member, key.toUtf8());
        m_members.append(member + ':');
    }
}

void CliJsonWriter::writeRow(CliGrid &grid, qsizetype row)
{
    QByteArray line("{");
    for (quint32 column = 0; column < grid.columnCount(); ++column) {
        if (column != 0)
            line += ',';
        line += m_members[column];
        const DXRowStore::Cell cell = grid.cell(row, column);
        appendCell(line, grid.kind(column), cell);
    }
    line += "}\n";
    m_output.write(line);
}
