// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXRowStore.h"
#include "core/DXGlobal.h"
#include "core/DXTextRange.h"
#include "core/DXValue.h"

#include <QList>
#include <QStringList>

#include <atomic>
#include <memory>
#include <mutex>

/// Which colour a message of a statement is shown in: black, or red for what failed. The window
/// turns it into its theme's foreground colour.
enum class DXMessageColor {
    Black,
    Red,
};

/// A message that a statement left.
struct DXQueryMessage
{
    QString text;
    DXMessageColor color = DXMessageColor::Black;
};

/// What became of one statement of a batch. The thread that runs the batch fills it, others read it
/// meanwhile: every operation is [any] unless it says otherwise.
class DXSHARED_EXPORT DXQueryResultDetails final
{
public:
    /// Turns a cell's bytes into its value, by the server's identifier of the column's type.
    using CellConverter = DXValue (*)(quint32 columnType, QByteArrayView bytes);

    explicit DXQueryResultDetails(CellConverter converter);

    QString executedQuery() const;
    void setExecutedQuery(const QString &query);
    qsizetype calculatedLineNumber() const;
    void setCalculatedLineNumber(qsizetype lineNumber);
    DXTextRange queryTextRange() const;
    void setQueryTextRange(DXTextRange range);
    QStringList columnNames() const;
    void setColumnNames(const QStringList &names);
    QList<quint32> columnTypes() const;
    void setColumnTypes(const QList<quint32> &types);
    QList<DXQueryMessage> messages() const;
    void setMessages(const QList<DXQueryMessage> &messages);
    /// Whether the statement was to commit the transaction, or to prepare it, and the server, which
    /// takes that for a success, rolled it back instead: an earlier statement in it had failed.
    bool hasRolledBackInstead() const { return m_rolledBackInstead; }
    void setRolledBackInstead(bool rolledBack) { m_rolledBackInstead = rolledBack; }
    bool isFinished() const { return m_finished.load(std::memory_order_acquire); }
    void setFinished(bool finished) { m_finished.store(finished, std::memory_order_release); }

    /// The rows so far; never null once a result stands in a list of results.
    std::shared_ptr<DXRowStore> rows() const;
    void setRows(const std::shared_ptr<DXRowStore> &rows);
    /// Hands over the rows appended to rows() since the last call: readers see them from now on.
    /// Executing thread only.
    void addRows();
    /// The value of a cell that was handed over; the null marker beyond either end.
    DXValue value(qsizetype row, quint32 column) const;

private:
    Q_DISABLE_COPY_MOVE(DXQueryResultDetails)

    const CellConverter m_converter;
    mutable std::mutex m_mutex;
    QString m_executedQuery;
    qsizetype m_calculatedLineNumber = 0;
    DXTextRange m_queryTextRange;
    QStringList m_columnNames;
    QList<quint32> m_columnTypes;
    QList<DXQueryMessage> m_messages;
    std::shared_ptr<DXRowStore> m_rows;
    std::atomic<bool> m_rolledBackInstead = false;
    std::atomic<bool> m_finished = false;
};
