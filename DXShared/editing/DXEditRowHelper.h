// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "core/DXGlobal.h"
#include "core/DXValue.h"

#include <QHash>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

class DabroDBC;

/// One field of the form that edits a row.
struct DXEditRowColumn
{
    /// Unquoted.
    QString columnName;
    /// The default's expression; null when the column has none.
    QString columnDefaultValue;
    bool isPrimaryKey = false;
    /// The server makes the value, so an INSERT never writes it.
    bool isIdentity = false;
    DXValue columnCurrentValue;
    /// The user changed the field since it was loaded.
    bool hasBeenModified = false;
};

/// Reads the columns of a table for a form that edits one of its rows, and writes the row back. The
/// form owns it and sets it up before another thread works with it; it serves one thread at a time.
class DXSHARED_EXPORT DXEditRowHelper
{
public:
    virtual ~DXEditRowHelper();

    /// Empty until known; loadTableColumns() fills in the connection's default schema.
    QString tableSchema() const { return m_tableSchema; }
    void setTableSchema(const QString &schema) { m_tableSchema = schema; }
    QString tableName() const { return m_tableName; }
    void setTableName(const QString &name) { m_tableName = name; }
    std::shared_ptr<const DabroDBC> databaseConnectionDetails() const { return m_details; }
    void setDatabaseConnectionDetails(const std::shared_ptr<const DabroDBC> &details)
    {
        m_details = details;
    }
    /// The row as it was opened, by column name; nothing when the form is for a new row.
    using ColumnValues = QHash<QString, DXValue>;
    const std::optional<ColumnValues> &initialColumnValues() const { return m_initialValues; }
    void setInitialColumnValues(const std::optional<ColumnValues> &values)
    {
        m_initialValues = values;
    }
    /// In the order of the table.
    const QList<DXEditRowColumn> &tableColumns() const { return m_tableColumns; }
    void setTableColumns(const QList<DXEditRowColumn> &columns) { m_tableColumns = columns; }

    /// Reads the table's columns into tableColumns(), a failure is reported and leaves what was
    /// read. [background]
    virtual void loadTableColumns() = 0;
    /// Writes the row: an UPDATE when it was opened with values, else an INSERT. *Result decides.*
    /// [background]
    virtual bool applyChanges(DXError *error) = 0;

protected:
    DXEditRowHelper() = default;

private:
    Q_DISABLE_COPY_MOVE(DXEditRowHelper)

    QString m_tableSchema;
    QString m_tableName;
    std::shared_ptr<const DabroDBC> m_details;
    std::optional<ColumnValues> m_initialValues;
    QList<DXEditRowColumn> m_tableColumns;
};
