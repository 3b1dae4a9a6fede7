// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editing/DXDatabaseAutocompleteEntry.h"

#include <QHash>
#include <QStringList>

#include <memory>
#include <optional>

/// The names of one database, for completion. Built by one thread, row by row, and cached; then
/// shared, and changed no more.
class PostgresAutocompleteEntires final
{
public:
    using Entries = DXDatabaseAutocompleteEntry::List;
    using Lookup = QHash<QString, Entries>;

    PostgresAutocompleteEntires() = default;

    struct Row
    {
        QString schemaName;
        QString tableName;
        QString columnName;
        QString columnType;
    };
    /// Adds a column, and its table and schema unless they are those of the row before, whatever
    /// their case.
    void addRow(const Row &row);
    /// Sorts the names and builds the look-ups, after the last row. Tables of defaultSchema are
    /// found without their schema, too.
    void createCache(const QString &defaultSchema);
    /// Appends entries to what inLookup has under the key forParent, whatever its case, and the
    /// columns among them to columnLookup unless that is null.
    static void addCachedEntries(const Entries &entries, const QString &forParent, Lookup &inLookup,
                                 Lookup *columnLookup);

    const Entries &schemas() const { return m_schemas; }
    const Entries &tables() const { return m_tables; }
    const Entries &columns() const { return m_columns; }
    /// Each name once, sorted for reading.
    const QStringList &schemaNames() const { return m_cachedSchemaNames; }
    const QStringList &tableNames() const { return m_cachedTableNames; }
    const QStringList &columnNames() const { return m_cachedColumnNames; }
    const QStringList &allPossibleNamesForAlias() const { return m_cachedPossibleNamesForAlias; }
    /// By table, schema.table or schema, whatever the case; nothing for an unknown one.
    std::optional<Entries> columnsForTableAndOrSchema(const QString &name) const;
    std::optional<Entries> entriesForTableAndOrSchema(const QString &name) const;

private:
    Q_DISABLE_COPY_MOVE(PostgresAutocompleteEntires)

    Entries m_schemas;
    Entries m_tables;
    Entries m_columns;
    // The last ones, while rows are added.
    std::shared_ptr<DXDatabaseAutocompleteEntry> m_schema;
    std::shared_ptr<DXDatabaseAutocompleteEntry> m_table;
    QString m_tablePath;

    QStringList m_cachedSchemaNames;
    QStringList m_cachedTableNames;
    QStringList m_cachedColumnNames;
    Lookup m_entriesLookupForTableAndOrSchema;
    Lookup m_columnsLookupForTableAndOrSchema;
    QStringList m_cachedPossibleNamesForAlias;
};
