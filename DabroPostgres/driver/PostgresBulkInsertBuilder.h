// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "core/DXValue.h"

#include <QByteArray>
#include <QList>
#include <QStringEncoder>
#include <QStringList>

#include <vector>

/// Writes the multi-row INSERT statements of a bulk insert, as UTF-8 in one buffer that every batch
/// uses again. It knows nothing of a connection. One thread at a time; it never blocks.
class PostgresBulkInsertBuilder final
{
public:
    /// The rows of a full batch.
    static constexpr int batchSize = 501;

    /// tablePath is written as it is; the column names are quoted where needed. A column whose type
    /// begins with the name of a number type is numeric: its texts are written bare, without
    /// thousands separators and currency signs. There is one type a name.
    PostgresBulkInsertBuilder(const QString &tablePath, const QStringList &columnNames,
                              const QStringList &columnTypes);

    /// Appends a row to the batch. On failure, which is a row with more or fewer cells than there
    /// are columns or a text that PostgreSQL cannot store, false with error naming row and column;
    /// the batch is then of no further use.
    bool addRow(const QList<DXValue> &row, DXError *error);
    /// The rows since the last statement.
    int pendingRows() const { return m_pendingRows; }
    bool isFull() const { return m_pendingRows >= batchSize; }

    /// Ends the batch and answers its statement, which stays as it is until the next addRow().
    const QByteArray &takeStatement();

private:
    // What appends text answers false on a NUL character.
    bool appendCell(const DXValue &cell, bool isNumeric);
    bool appendQuoted(const QString &text);
    bool appendBare(const QString &text);
    bool appendUtf8(QStringView text);
    void appendInteger(qint64 number);
    void appendBytes(const QByteArray &bytes);
    void reportBadRow(const QString &reason, DXError *error) const;

    const QStringList m_columnNames;
    std::vector<bool> m_columnIsNumeric;
    // The head up to m_headSize, then the rows of the batch.
    QByteArray m_statement;
    qsizetype m_headSize = 0;
    int m_pendingRows = 0;
    qint64 m_rows = 0;
    QStringEncoder m_encoder;
};
