// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXQueryResultDetails.h"

DXQueryResultDetails::DXQueryResultDetails(CellConverter converter)
    : m_converter(converter)
{ }

QString DXQueryResultDetails::executedQuery() const
{
    const std::lock_guard lock(m_mutex);
    return m_executedQuery;
}

void DXQueryResultDetails::setExecutedQuery(const QString &query)
{
    const std::lock_guard lock(m_mutex);
    m_executedQuery = query;
}

qsizetype DXQueryResultDetails::calculatedLineNumber() const
{
    const std::lock_guard lock(m_mutex);
    return m_calculatedLineNumber;
}

void DXQueryResultDetails::setCalculatedLineNumber(qsizetype lineNumber)
{
    const std::lock_guard lock(m_mutex);
    m_calculatedLineNumber = lineNumber;
}

DXTextRange DXQueryResultDetails::queryTextRange() const
{
    const std::lock_guard lock(m_mutex);
    return m_queryTextRange;
}

void DXQueryResultDetails::setQueryTextRange(DXTextRange range)
{
    const std::lock_guard lock(m_mutex);
    m_queryTextRange = range;
}

QStringList DXQueryResultDetails::columnNames() const
{
    const std::lock_guard lock(m_mutex);
    return m_columnNames;
}

void DXQueryResultDetails::setColumnNames(const QStringList &names)
{
    const std::lock_guard lock(m_mutex);
    m_columnNames = names;
}

QList<quint32> DXQueryResultDetails::columnTypes() const
{
    const std::lock_guard lock(m_mutex);
    return m_columnTypes;
}

void DXQueryResultDetails::setColumnTypes(const QList<quint32> &types)
{
    const std::lock_guard lock(m_mutex);
    m_columnTypes = types;
}

QList<DXQueryMessage> DXQueryResultDetails::messages() const
{
    const std::lock_guard lock(m_mutex);
    return m_messages;
}

void DXQueryResultDetails::setMessages(const QList<DXQueryMessage> &messages)
{
    const std::lock_guard lock(m_mutex);
    m_messages = messages;
}

std::shared_ptr<DXRowStore> DXQueryResultDetails::rows() const
{
    const std::lock_guard lock(m_mutex);
    return m_rows;
}

void DXQueryResultDetails::setRows(const std::shared_ptr<DXRowStore> &rows)
{
    const std::lock_guard lock(m_mutex);
    m_rows = rows;
}

void DXQueryResultDetails::addRows()
{
    rows()->publish();
}

DXValue DXQueryResultDetails::value(qsizetype row, quint32 column) const
{
    const std::lock_guard lock(m_mutex);
    if (!m_rows || column >= static_cast<quint32>(m_columnTypes.size()))
        return {};
    const DXRowStore::Cell cell = m_rows->cell(row, column);
    return cell.isNull() ? DXValue() : m_converter(m_columnTypes[column], cell.view());
}
