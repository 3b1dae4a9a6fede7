// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXQueryResultDetails.h"
#include "client/DXRowStore.h"

#include <QList>
#include <QStringList>

#include <memory>

/// The rows of one statement as the writers read them: mostly the very bytes that the server sent.
/// Executing thread only.
class CliGrid final
{
public:
    /// What the cells of a column are.
    enum class Kind {
        Unknown, ///< only nulls so far
        Text,
        Number, ///< exact: integers and decimals
        Boolean,
    };

    explicit CliGrid(const std::shared_ptr<DXQueryResultDetails> &details);

    const QStringList &columnNames() const { return m_columnNames; }
    quint32 columnCount() const { return static_cast<quint32>(m_columnNames.size()); }
    /// Rows that may be read.
    qsizetype rowCount() const { return m_rows->rowCount(); }
    /// The cell's text in UTF-8, or what came from a database without an encoding; booleans are
    /// "True" and "False". Null for NULL. Lives until its row is discarded.
    DXRowStore::Cell cell(qsizetype row, quint32 column);
    /// What is known of the column by the cells read so far.
    Kind kind(quint32 column) const { return m_kinds[column]; }
    void discardRowsBefore(qsizetype row) { m_rows->discardRowsBefore(row); }

private:
    Kind kindOf(qsizetype row, quint32 column, QByteArrayView bytes) const;

    const std::shared_ptr<DXQueryResultDetails> m_details;
    const std::shared_ptr<DXRowStore> m_rows;
    const QStringList m_columnNames;
    QList<Kind> m_kinds;
};
