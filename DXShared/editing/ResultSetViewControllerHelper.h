// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "core/DXValue.h"
#include "editing/DXEnumHelper.h"

#include <QList>
#include <QStringList>

#include <memory>
#include <optional>

class DXQueryLoader;
class DabroDBC;

/// Who shows the grid that a helper serves.
class DXSHARED_EXPORT ResultSetViewControllerHelperDelegate
{
public:
    virtual ~ResultSetViewControllerHelperDelegate();

    /// The search for the key of the grid's table has ended; both are null when the query does not
    /// read a single table. The selector is `loadedPrimaryKeysForTable:inSchema:`. [main]
    virtual void loadedPrimaryKeysForTable(const QString &table, const QString &schema) = 0;
};

/// What only a driver knows about the grid of one query: the table behind it and its key, how a
/// cell is edited and shown, the statements that write changes back. Owned by shared pointers; a
/// load under way keeps it alive. [main] where nothing else is said.
class DXSHARED_EXPORT ResultSetViewControllerHelper
    : public std::enable_shared_from_this<ResultSetViewControllerHelper>
{
public:
    /// How the grid edits and aligns a cell.
    enum class CellKind {
        Unknown = 0,
        Text = 1,
        DateAndTime = 3,
        Enumeration = 6,
        /// Shown as it is, edited as a whole.
        Object = 7,
        Integer = 8,
        Decimal = 9
    };
    enum class AllowTruncate { No, Yes };
    /// Characters of a cell that are shown where truncating is allowed.
    static constexpr qsizetype TruncatedLength = 1000;

    virtual ~ResultSetViewControllerHelper();

    std::shared_ptr<const DabroDBC> databaseConnectionDetails() const { return m_details; }
    std::weak_ptr<ResultSetViewControllerHelperDelegate> delegate() const { return m_delegate; }
    void setDelegate(const std::weak_ptr<ResultSetViewControllerHelperDelegate> &delegate)
    {
        m_delegate = delegate;
    }
    /// The server's identifiers of the types of the grid's columns.
    const QList<quint32> &columnTypes() const { return m_columnTypes; }
    void setColumnTypes(const QList<quint32> &types) { m_columnTypes = types; }
    /// The text whose rows the grid shows. Set before beginLoadingPrimaryKeys().
    QString executedQuery() const { return m_executedQuery; }
    void setExecutedQuery(const QString &query) { m_executedQuery = query; }

    /// Looks for the table of executedQuery() and its key in the background, and tells the
    /// delegate.
    virtual void beginLoadingPrimaryKeys() = 0;
    /// In key order; nothing before they are loaded or when there is no single table. [any]
    virtual std::optional<QStringList> primaryKeyColumnNames() const = 0;

    /// The selector is `dataTypeForTableColumn:object:`.
    virtual CellKind dataTypeForTableColumn(int column, const DXValue &object) const = 0;
    /// The choices of an enumeration column; nothing for another one.
    virtual std::optional<QStringList> popupTitlesAtIndex(int column) const = 0;
    virtual std::optional<DXEnumHelper> enumDetailsForColumn(int column) const = 0;
    /// The value to store for what the user chose or typed. The selector is
    /// `processSetObject:forColumnIndex:`.
    virtual DXValue processSetObject(const DXValue &object, int forColumnIndex) const = 0;
    /// The text of a cell of a row; null for SQL NULL. Bytes show as `\x` and hexadecimal digits.
    /// The selector is `stringValueForRowArray:column:allowTruncate:`.
    virtual QString stringValueForRowArray(const QList<DXValue> &row, int column,
                                           AllowTruncate allowTruncate) const;

    struct UpdateParts
    {
        QString table;
        /// Null when the query names none.
        QString schema;
        QString setClause;
        QString whereClause;
    };
    /// The statement that writes an edited row. The selector is
    /// `updateQueryForTable:inSchema:setClause:whereClause:`.
    virtual QString updateQueryForTable(const UpdateParts &parts) const = 0;
    /// The script that deletes rows, each given by its values in the order of usingColumns. The
    /// selector is `createQueryLoaderForDeleteFromTablePath:usingColumns:data:`.
    virtual std::shared_ptr<DXQueryLoader>
    createQueryLoaderForDeleteFromTablePath(const QStringList &tablePath,
                                            const QStringList &usingColumns,
                                            const QList<QList<DXValue>> &data) const = 0;

protected:
    explicit ResultSetViewControllerHelper(const std::shared_ptr<const DabroDBC> &details);

private:
    Q_DISABLE_COPY_MOVE(ResultSetViewControllerHelper)

    const std::shared_ptr<const DabroDBC> m_details;
    std::weak_ptr<ResultSetViewControllerHelperDelegate> m_delegate;
    QList<quint32> m_columnTypes;
    QString m_executedQuery;
};
