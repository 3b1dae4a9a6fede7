// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/PostgresTreeSorting.h"

#include "core/DXCollation.h"
#include "tree/objects/PostgresDatabaseTreeEntryDatabaseTable.h"

#include <QHash>

#include <algorithm>

using List = DXDatabaseTreeEntry::List;

namespace
{

using Table = PostgresDatabaseTreeEntryDatabaseTable;

struct Place
{
    qsizetype schema;
    const Table *table;
    qsizetype index;
};

bool operator<(const Place &left, const Place &right)
{
    if (left.schema != right.schema)
        return left.schema < right.schema;
    return left.table->tableName() < right.table->tableName();
}

// A few schemas hold many tables: each schema is compared as people read once.
QHash<QString, qsizetype> placesOfSchemas(const List &entries)
{
    QHash<QString, qsizetype> places;
    for (const auto &entry : entries)
        places.insert(static_cast<const Table &>(*entry).schema(), 0);
    const QStringList schemas = places.keys();
    const QList<qsizetype> ranks = DXCollation::ranks(schemas);
    for (qsizetype index = 0; index < schemas.size(); ++index)
        places[schemas[index]] = ranks[index];
    return places;
}

} // namespace

List PostgresTreeSorting::tables(const List &entries)
{
    const QHash<QString, qsizetype> schemas = placesOfSchemas(entries);
    QList<Place> places;
    places.reserve(entries.size());
    for (qsizetype index = 0; index < entries.size(); ++index) {
        const auto &table = static_cast<const Table &>(*entries[index]);
        places.append(
            {table.isInDefaultSchema() ? -1 : schemas.value(table.schema()), &table, index});
    }
    std::stable_sort(places.begin(), places.end());
    List sorted;
    sorted.reserve(entries.size());
    for (const Place &place : places)
        sorted.append(entries[place.index]);
    return sorted;
}

List PostgresTreeSorting::byName(const List &entries, const QStringList &names)
{
    List sorted;
    sorted.reserve(entries.size());
    for (const qsizetype index : DXCollation::sortedIndexes(names))
        sorted.append(entries[index]);
    return sorted;
}
