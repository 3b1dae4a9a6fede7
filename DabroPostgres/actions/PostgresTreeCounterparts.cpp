// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "actions/PostgresTreeCounterparts.h"

#include "client/DabroDBC.h"
#include "tree/PostgresDatabaseTreeEntryDatabase.h"
#include "tree/objects/PostgresDatabaseTreeEntryDatabaseTable.h"
#include "tree/objects/PostgresDatabaseTreeEntryDatabaseTableColumn.h"
#include "tree/objects/PostgresDatabaseTreeEntryFunction.h"
#include "tree/objects/PostgresDatabaseTreeEntrySequence.h"
#include "tree/objects/PostgresDatabaseTreeEntryType.h"
#include "tree/objects/PostgresTreeEntryTableIndex.h"

#include <QStringList>

#include <typeinfo>

using List = DXDatabaseTreeEntry::List;

namespace
{

template<typename Kind>
const Kind *as(const DXDatabaseTreeEntry &entry)
{
    return dynamic_cast<const Kind *>(&entry);
}

// What tells entry from others of its class in its database.
QStringList identityOf(const DXDatabaseTreeEntry &entry)
{
    if (const auto *const table = as<PostgresDatabaseTreeEntryDatabaseTable>(entry))
        return {table->schema(), table->tableName()};
    if (const auto *const column = as<PostgresDatabaseTreeEntryDatabaseTableColumn>(entry))
        return {column->schema(), column->tableName(), column->columnName()};
    if (const auto *const function = as<PostgresDatabaseTreeEntryFunction>(entry))
        return {function->schema(), function->functionName(), function->functionOverload()};
    if (const auto *const sequence = as<PostgresDatabaseTreeEntrySequence>(entry))
        return {sequence->schema(), sequence->sequenceName()};
    if (const auto *const type = as<PostgresDatabaseTreeEntryType>(entry))
        return {type->schema(), type->typeName()};
    if (const auto *const index = as<PostgresTreeEntryTableIndex>(entry))
        return {index->schema(), index->indexName()};
    return {entry.displayName()};
}

struct Wanted
{
    const std::type_info &kind;
    const QStringList identity;
};

void collect(const DXDatabaseTreeEntry &above, const Wanted &wanted, List &found)
{
    const auto children = above.childEntries();
    if (!children)
        return;
    for (const auto &child : *children) {
        const DXDatabaseTreeEntry &entry = *child;
        if (typeid(entry) == wanted.kind && identityOf(entry) == wanted.identity)
            found.append(child);
        else
            collect(entry, wanted, found);
    }
}

} // namespace

List PostgresTreeCounterparts::databasesOf(const List &roots, const DXDatabaseTreeEntry &entry)
{
    const QByteArray session = entry.databaseConnectionDetails()->sessionKey();
    List databases;
    for (const auto &root : roots) {
        const auto children = root->childEntries();
        for (const auto &child : children ? *children : List()) {
            if (as<PostgresDatabaseTreeEntryDatabase>(*child)
                && child->databaseConnectionDetails()->sessionKey() == session)
                databases.append(child);
        }
    }
    return databases;
}

List PostgresTreeCounterparts::find(const List &roots, const DXDatabaseTreeEntry &entry)
{
    const Wanted wanted{.kind = typeid(entry), .identity = identityOf(entry)};
    const List databases = databasesOf(roots, entry);
    if (as<PostgresDatabaseTreeEntryDatabase>(entry))
        return databases;
    List found;
    for (const auto &database : databases)
        collect(*database, wanted, found);
    return found;
}
