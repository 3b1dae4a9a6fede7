// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/DXCompletionNames.h"

#include "editing/DXAutocompleteHelper.h"

#include <QSet>

namespace
{

using Entries = DXCompletionNames::Entries;

bool isSame(const QString &left, const QString &right)
{
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

QStringList namesOf(const Entries &entries)
{
    QStringList names;
    names.reserve(entries.size());
    for (const auto &entry : entries)
        names += entry->entryName;
    return names;
}

Entries oneOfEach(const Entries &columns)
{
    QSet<QString> seen;
    Entries found;
    for (const auto &column : columns) {
        if (const qsizetype before = seen.size();
            seen.insert(column->entryName), seen.size() > before)
            found += column;
    }
    return found;
}

// The driver finds tables of the default schema by their own names, too.
QString defaultSchemaOf(const DXAutocompleteHelper &helper, const DabroDBC &details,
                        const Entries &tables)
{
    for (const auto &table : tables) {
        const auto columns = helper.columnsForDatabaseConnectionDetails(details, table->entryName);
        if (columns && !columns->isEmpty() && columns->first()->entryParent.lock() == table)
            return table->entryParentDisplay;
    }
    return {};
}

} // namespace

DXCompletionNames::DXCompletionNames(const Init &init)
    : m_schemas(init.schemas)
    , m_tables(init.tables)
    , m_columns(oneOfEach(init.columns))
    , m_schemaIndex(namesOf(m_schemas))
    , m_tableIndex(namesOf(m_tables))
    , m_columnIndex(namesOf(m_columns))
    , m_defaultSchema(init.defaultSchema)
{ }

std::shared_ptr<const DXCompletionNames> DXCompletionNames::read(const DXAutocompleteHelper &helper,
                                                                 const DabroDBC &details)
{
    const auto schemas = helper.schemasForDatabaseConnectionDetails(details);
    const auto tables = helper.tablesForDatabaseConnectionDetails(details);
    const auto columns = helper.columnsForDatabaseConnectionDetails(details);
    if (!schemas || !tables || !columns)
        return {};
    return std::make_shared<const DXCompletionNames>(
        Init{.schemas = *schemas,
             .tables = *tables,
             .columns = *columns,
             .defaultSchema = defaultSchemaOf(helper, details, *tables)});
}

bool DXCompletionNames::isInDefaultSchema(const Entry &table) const
{
    return table.entryParentDisplay == m_defaultSchema;
}

const DXCompletionNames::Entry *DXCompletionNames::tableCalled(const QStringList &path) const
{
    if (path.isEmpty())
        return nullptr;
    const QList<qsizetype> found = m_tableIndex.called(path.last());
    const Entry *other = nullptr;
    for (const qsizetype index : found) {
        const Entry &table = *m_tables[index];
        const bool isWanted = path.size() > 1
                                  ? isSame(table.entryParentDisplay, path[path.size() - 2])
                                  : isInDefaultSchema(table);
        if (isWanted)
            return &table;
        other = &table;
    }
    return path.size() == 1 && found.size() == 1 ? other : nullptr;
}

const DXCompletionNames::Entry *DXCompletionNames::schemaCalled(const QString &name) const
{
    const QList<qsizetype> found = m_schemaIndex.called(name);
    return found.isEmpty() ? nullptr : m_schemas[found.first()].get();
}
