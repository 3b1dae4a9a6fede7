// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "core/DXGlobal.h"
#include "core/DXValue.h"

#include <QList>
#include <QStringList>

#include <optional>

/// A forward-only cursor over the results of one query text. Belongs to the thread that runs the
/// query; everything here is [any], but never two threads at once. To be drained or destroyed
/// before the client runs its next query.
class DXSHARED_EXPORT DatabaseResultSet
{
public:
    virtual ~DatabaseResultSet();

    /// Moves to the next row; true while a row is current. *End or error*: false is the end of the
    /// statement's rows unless error is filled.
    virtual bool next(DXError *error) = 0;
    /// Moves to the results of the following statement. *End or error*, as next().
    virtual bool nextResultSet(DXError *error) = 0;

    virtual quint32 columnCount() const = 0;
    const QStringList &columnNames() const { return m_columnNames; }
    void setColumnNames(const QStringList &names) { m_columnNames = names; }
    /// The server's identifier of each column's type.
    const QList<quint32> &columnTypes() const { return m_columnTypes; }
    void setColumnTypes(const QList<quint32> &types) { m_columnTypes = types; }
    /// Null when there is no such column.
    QString columnNameForIndex(quint32 index) const;
    /// The first column whose name equals name exactly; -1 when there is none. Callers that read
    /// many rows ask once and use the index.
    qsizetype indexOfColumn(const QString &name) const;

    /// The converted cell of the current row; the null marker for NULL and beyond the last column.
    virtual DXValue objectForColumnIndex(quint32 index) const = 0;
    /// The converted cell as it is, whatever its kind; a null value is this interface's "nothing".
    DXValue stringForColumnIndex(quint32 index) const { return objectForColumnIndex(index); }
    /// The same by name; an unknown name reads like NULL.
    DXValue stringForColumn(const QString &name) const;
    /// Nothing for NULL. A number is true when not zero; a text when, after blanks, it begins with
    /// Y, y, T, t or a digit 1 to 9.
    std::optional<bool> boolForColumnIndex(quint32 index) const;
    std::optional<bool> boolForColumn(const QString &name) const;
    /// A number as it is; a text read as a decimal number in the user's locale with grouping,
    /// nothing when it is none; every other value unchanged, so NULL gives the null marker.
    std::optional<DXValue> numberForColumnIndex(quint32 index) const;
    std::optional<DXValue> numberForColumn(const QString &name) const;

    /// Rows that the finished statement touched; -1 when unknown.
    virtual qint64 numberOfAffectedRows() const = 0;
    /// Whether the statement produced a row.
    bool shouldHaveRows() const { return m_shouldHaveRows; }
    void setShouldHaveRows(bool shouldHaveRows) { m_shouldHaveRows = shouldHaveRows; }

protected:
    DatabaseResultSet() = default;

private:
    Q_DISABLE_COPY_MOVE(DatabaseResultSet)

    QStringList m_columnNames;
    QList<quint32> m_columnTypes;
    bool m_shouldHaveRows = false;
};
