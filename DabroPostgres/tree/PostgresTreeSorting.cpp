// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/PostgresTreeSorting.h"

#include "core/DXCollation.h"
#include "tree/objects/PostgresDatabaseTreeEntryDatabaseTable.h"

#include <QHash>

#include <algorithm>
#include <utility>
#include <vector>

using List = DXDatabaseTreeEntry::List;

namespace
{

using Table = PostgresDatabaseTreeEntryDatabaseTable;

struct Place
{
    qsizetype schema;
    // The first characters that tell names apart: most comparisons need no more.
    quint64 key;
    QStringView name;
    qsizetype index;
};

bool operator<(const Place &left, const Place &right)
{
    if (left.schema != right.schema)
        return left.schema < right.schema;
    if (left.key != right.key)
        return left.key < right.key;
    const int order = left.name.compare(right.name);
    return order != 0 ? order < 0 : left.index < right.index;
}

qsizetype lengthOfCommonPrefix(const List &entries)
{
    QStringView prefix;
    bool isFirst = true;
    for (const auto &entry : entries) {
        const QStringView name = static_cast<const Table &>(*entry).tableName();
        if (std::exchange(isFirst, false))
            prefix = name;
        const auto end = std::mismatch(prefix.begin(), prefix.end(), name.begin(), name.end());
        prefix = prefix.first(end.first - prefix.begin());
    }
    return prefix.size();
}

// Four characters from there; no name holds the zero that stands for none.
quint64 keyAt(QStringView name, qsizetype place)
{
    quint64 key = 0;
    for (qsizetype at = place; at < place + 4; ++at)
        key = key << 16 | (at < name.size() ? name[at].unicode() : 0);
    return key;
}

// Where schemas stand among those of some tables. A few schemas hold many tables: each schema is
// compared as people read once, and looked up only where it changes.
class SchemaPlaces final
{
public:
    explicit SchemaPlaces(const List &entries)
    {
        QString last;
        for (const auto &entry : entries) {
            const QString &schema = static_cast<const Table &>(*entry).schema();
            if (schema == last && !m_places.isEmpty())
                continue;
            m_places.insert(schema, 0);
            last = schema;
        }
        const QStringList schemas = m_places.keys();
        const QList<qsizetype> ranks = DXCollation::ranks(schemas);
        for (qsizetype index = 0; index < schemas.size(); ++index)
            m_places[schemas[index]] = ranks[index];
    }

    qsizetype of(const Table &table)
    {
        if (m_lastPlace < 0 || table.schema() != m_lastSchema) {
            m_lastSchema = table.schema();
            m_lastPlace = table.isInDefaultSchema() ? 0 : 1 + m_places.value(m_lastSchema);
        }
        return m_lastPlace;
    }

private:
    QHash<QString, qsizetype> m_places;
    QString m_lastSchema;
    // The default schema's is 0.
    qsizetype m_lastPlace = -1;
};

} // namespace

List PostgresTreeSorting::tables(List entries)
{
    SchemaPlaces schemas(entries);
    const qsizetype prefix = lengthOfCommonPrefix(entries);
    std::vector<Place> places;
    places.reserve(static_cast<std::size_t>(entries.size()));
    for (qsizetype index = 0; index < entries.size(); ++index) {
        const auto &table = static_cast<const Table &>(*std::as_const(entries)[index]);
        const QString &name = table.tableName();
        places.push_back({schemas.of(table), keyAt(name, prefix), name, index});
    }
    std::sort(places.begin(), places.end());
    List sorted;
    sorted.reserve(entries.size());
    for (const Place &place : places)
        sorted.append(std::move(entries[place.index]));
    return sorted;
}
