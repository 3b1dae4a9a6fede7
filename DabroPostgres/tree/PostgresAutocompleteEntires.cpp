// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/PostgresAutocompleteEntires.h"

#include "core/DXCollation.h"
#include "core/DXLogHelper.h"

#include <QSet>

#include <algorithm>

namespace
{

using Entry = DXDatabaseAutocompleteEntry;
using Entries = PostgresAutocompleteEntires::Entries;

bool isSame(const QString &left, const QString &right)
{
    return left == right || left.compare(right, Qt::CaseInsensitive) == 0;
}

// Nothing, and a line in the log, when one has no name.
std::optional<QStringList> sortedNames(const Entries &entries, QLatin1String listName)
{
    QStringList names;
    QSet<QString> seen;
    for (const auto &entry : entries) {
        if (entry->entryName.isNull()) {
            DXLog(listName + QLatin1String(" contains invalid entryName"));
            return std::nullopt;
        }
        const qsizetype before = seen.size();
        seen.insert(entry->entryName);
        if (seen.size() != before)
            names += entry->entryName;
    }
    return DXCollation::sorted(names);
}

std::optional<Entries> find(const PostgresAutocompleteEntires::Lookup &lookup, const QString &name)
{
    const auto found = lookup.constFind(name.toLower());
    return found == lookup.constEnd() ? std::nullopt : std::optional(*found);
}

} // namespace

void PostgresAutocompleteEntires::addRow(const Row &row)
{
    if (!m_schema || !isSame(m_schema->entryName, row.schemaName)) {
        m_schema = std::make_shared<Entry>();
        m_schema->entryName = row.schemaName;
        m_schema->entryCompletionType = Entry::CompletionType::Schema;
        m_schemas += m_schema;
        m_table = nullptr;
    }
    if (!m_table || !isSame(m_table->entryName, row.tableName)) {
        m_table = std::make_shared<Entry>();
        m_table->entryName = row.tableName;
        m_table->entryCompletionType = Entry::CompletionType::Table;
        m_table->entryParent = m_schema;
        m_table->entryParentDisplay = m_schema->entryName;
        m_tablePath = m_schema->entryName + u'.' + m_table->entryName;
        m_schema->entryChildren += m_table;
        m_tables += m_table;
    }
    const auto column = std::make_shared<Entry>();
    column->entryName = row.columnName;
    column->entryCompletionType = Entry::CompletionType::Column;
    column->entryParent = m_table;
    column->entryParentDisplay = m_tablePath;
    column->entryDetails = row.columnType;
    m_table->entryChildren += column;
    m_columns += column;
}

void PostgresAutocompleteEntires::createCache(const QString &defaultSchema)
{
    const auto schemaNames = sortedNames(m_schemas, QLatin1String("allSchemaNames"));
    const auto tableNames =
        schemaNames ? sortedNames(m_tables, QLatin1String("allTableNames")) : std::nullopt;
    const auto columnNames =
        tableNames ? sortedNames(m_columns, QLatin1String("allColumnNames")) : std::nullopt;
    if (!columnNames)
        return;
    m_cachedSchemaNames = *schemaNames;
    m_cachedTableNames = *tableNames;
    m_cachedColumnNames = *columnNames;

    for (const auto &table : m_tables) {
        const QString &schema = table->entryParentDisplay;
        addCachedEntries(table->entryChildren, schema + u'.' + table->entryName,
                         m_entriesLookupForTableAndOrSchema, &m_columnsLookupForTableAndOrSchema);
        if (isSame(schema, defaultSchema))
            addCachedEntries(table->entryChildren, table->entryName,
                             m_entriesLookupForTableAndOrSchema,
                             &m_columnsLookupForTableAndOrSchema);
    }
    for (const auto &schema : m_schemas)
        addCachedEntries(schema->entryChildren, schema->entryName,
                         m_entriesLookupForTableAndOrSchema, nullptr);
    QStringList keys = m_entriesLookupForTableAndOrSchema.keys();
    // Keys that read alike stay in the order of their characters.
    std::sort(keys.begin(), keys.end());
    m_cachedPossibleNamesForAlias = DXCollation::sorted(keys);
}

void PostgresAutocompleteEntires::addCachedEntries(const Entries &entries, const QString &forParent,
                                                   Lookup &inLookup, Lookup *columnLookup)
{
    const QString key = forParent.toLower();
    inLookup[key] += entries;
    if (!columnLookup)
        return;
    const auto isColumn = [](const auto &entry) {
        return entry->entryCompletionType == Entry::CompletionType::Column;
    };
    Entries &columns = (*columnLookup)[key];
    if (columns.isEmpty() && std::all_of(entries.begin(), entries.end(), isColumn))
        columns = entries;
    else
        std::copy_if(entries.begin(), entries.end(), std::back_inserter(columns), isColumn);
}

std::optional<Entries>
PostgresAutocompleteEntires::columnsForTableAndOrSchema(const QString &name) const
{
    return find(m_columnsLookupForTableAndOrSchema, name);
}

std::optional<Entries>
PostgresAutocompleteEntires::entriesForTableAndOrSchema(const QString &name) const
{
    return find(m_entriesLookupForTableAndOrSchema, name);
}
