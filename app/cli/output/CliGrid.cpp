// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/output/CliGrid.h"

namespace
{

DXRowStore::Cell booleanText(QByteArrayView bytes)
{
    static constexpr char yes[] = "True";
    static constexpr char no[] = "False";
    return bytes == "t" ? DXRowStore::Cell{yes, sizeof(yes) - 1}
                        : DXRowStore::Cell{no, sizeof(no) - 1};
}

} // namespace

CliGrid::CliGrid(const std::shared_ptr<DXQueryResultDetails> &details)
    : m_details(details)
    , m_rows(details->rows())
    , m_columnNames(details->columnNames())
    , m_kinds(m_columnNames.size(), Kind::Unknown)
{ }

DXRowStore::Cell CliGrid::cell(qsizetype row, quint32 column)
{
    const DXRowStore::Cell cell = m_rows->cell(row, column);
    if (cell.isNull())
        return cell;
    Kind &kind = m_kinds[column];
    if (kind == Kind::Unknown)
        kind = kindOf(row, column, cell.view());
    return kind == Kind::Boolean ? booleanText(cell.view()) : cell;
}

// The driver alone knows types. A column has one, so its first cell tells for all; a boolean is
// what the driver turns from a letter into a word.
CliGrid::Kind CliGrid::kindOf(qsizetype row, quint32 column, QByteArrayView bytes) const
{
    const DXValue value = m_details->value(row, column);
    if (value.isNumber())
        return Kind::Number;
    const QString text = value.toText();
    const bool isBoolean = (bytes == "t" && text == QLatin1String("True"))
                           || (bytes == "f" && text == QLatin1String("False"));
    return isBoolean ? Kind::Boolean : Kind::Text;
}
