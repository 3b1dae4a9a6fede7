// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
// A database's side of searching the catalogue.
#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "client/DatabaseResultSet.h"
#include "core/DXLogHelper.h"
#include "dispatch/DXDispatch.h"
#include "driver/PostgresCatalogueReader.h"
#include "driver/PostgresDatabaseClient.h"
#include "driver/PostgresSystemDatabaseQueries.h"
#include "tree/PostgresDatabaseTreeEntryDatabase.h"
#include "tree/PostgresTreeQuery.h"
#include "tree/objects/PostgresDatabaseTreeEntryDatabaseTable.h"
#include "tree/objects/PostgresDatabaseTreeEntryFunction.h"

#include <algorithm>

using Entry = PostgresSearchIndex::Entry;

namespace
{

// Nothing when a column has no value.
std::optional<Entry> readEntry(const DatabaseResultSet &row)
{
    const QString name = row.stringForColumnIndex(1).toText();
    const std::optional<DXValue> sortOrder = row.numberForColumnIndex(3);
    const Entry entry{.display = name,
                      .schema = row.stringForColumnIndex(0).toText(),
                      .objectName = name,
                      .type = row.stringForColumnIndex(2).toText(),
                      .sortOrder = sortOrder ? sortOrder->toInteger() : 0,
                      .defaultSchema = row.stringForColumnIndex(4).toText(),
                      .search = row.stringForColumnIndex(5).toText(),
                      .details = row.stringForColumnIndex(6).toText()};
    const auto texts = {entry.schema,        entry.objectName, entry.type,
                        entry.defaultSchema, entry.search,     entry.details};
    const bool isWhole = sortOrder && !sortOrder->isNull()
                         && std::none_of(texts.begin(), texts.end(),
                                         [](const QString &text) { return text.isNull(); });
    return isWhole ? std::optional(entry) : std::nullopt;
}

bool isType(const Entry &entry, const char *type)
{
    return entry.type.compare(QLatin1String(type), Qt::CaseInsensitive) == 0;
}

} // namespace

std::shared_ptr<const PostgresSearchIndex> PostgresDatabaseTreeEntryDatabase::searchResults() const
{
    const std::lock_guard lock(m_mutex);
    return m_searchResults;
}

void PostgresDatabaseTreeEntryDatabase::setSearchResults(
    const std::shared_ptr<const PostgresSearchIndex> &searchResults)
{
    // The old ones end outside of the lock.
    auto swapped = searchResults;
    const std::lock_guard lock(m_mutex);
    m_searchResults.swap(swapped);
}

bool PostgresDatabaseTreeEntryDatabase::updateSearchResults(DXError *error)
{
    const auto index = std::make_shared<const PostgresSearchIndex>(readSearchEntries(error));
    DXDispatch::main(
        [self = std::static_pointer_cast<PostgresDatabaseTreeEntryDatabase>(shared_from_this()),
         index] { self->setSearchResults(index); });
    return true;
}

QList<Entry> PostgresDatabaseTreeEntryDatabase::readSearchEntries(DXError *error) const
{
    const QString title = QStringLiteral("List_SearchableDatabaseEntries");
    QString query = PostgresSystemDatabaseQueries::queryByTitle(title);
    QList<Entry> entries;
    const auto add = [&](const DatabaseResultSet &row) {
        if (const auto entry = readEntry(row))
            entries.append(*entry);
        else
            DXLog(QStringLiteral("updateSearchResults had a nil value. Skipping entry."));
    };
    DXError failure;
    DabroDatabaseConnectionPool::executeQuery(
        [&](DabroDatabaseClient &client, DXError *slot) {
            query = PostgresSystemDatabaseQueries::queryByTitle(
                PostgresTreeQuery::titleFor(title, client.serverVersion()));
            DXError queryError;
            PostgresCatalogueReader::read(client, query, add, &queryError);
            if (queryError) {
                DXLog(QStringLiteral("Error executing query. %1.").arg(queryError.description()));
                DXError::report(slot, queryError);
            }
        },
        *databaseConnectionDetails(), &failure,
        {.allowPooled = DabroDatabaseConnectionPool::AllowPooled::No,
         .isUserQuery = DabroDatabaseConnectionPool::IsUserQuery::No});
    if (failure) {
        failure = failure.withDomain(QStringLiteral("postgres.databaseTree.updateSearchResults"));
        PostgresDatabaseClient::reportError(failure, {{QStringLiteral("Query"), query}});
        DXError::report(error, failure);
    }
    return entries;
}

std::shared_ptr<DXDatabaseTreeEntry>
PostgresDatabaseTreeEntryDatabase::copyWithSearchResults(const QString &search) const
{
    const auto index = searchResults();
    if (!index)
        return {};
    const auto details = databaseConnectionDetails()->copy();
    List hits;
    for (const qsizetype match : index->matches(search)) {
        if (const auto hit = makeHit(index->entries()[match])) {
            hit->setDelegate(delegate());
            hit->setDatabaseConnectionDetails(details);
            hits.append(hit);
        }
    }
    if (hits.isEmpty())
        return {};
    const auto copy = std::make_shared<PostgresDatabaseTreeEntryDatabase>(hits);
    copy->setDisplayName(displayName());
    copy->setDatabaseName(m_databaseName);
    copy->setDatabaseConnectionDetails(databaseConnectionDetails()->copy());
    for (const auto &hit : std::as_const(hits))
        hit->setParent(copy);
    return copy;
}

std::shared_ptr<DXDatabaseTreeEntry>
PostgresDatabaseTreeEntryDatabase::makeHit(const Entry &entry) const
{
    using Table = PostgresDatabaseTreeEntryDatabaseTable;
    using Function = PostgresDatabaseTreeEntryFunction;
    if (isType(entry, "FUNCTION")) {
        auto function =
            std::make_shared<Function>(Function::Init{.functionName = entry.objectName,
                                                      .overload = entry.details,
                                                      .schema = entry.schema,
                                                      .defaultSchema = entry.defaultSchema,
                                                      .displaySchema = 1});
        // Tells overloads apart, as below "Functions".
        function->setDetails(entry.details);
        return function;
    }
    const bool isView = isType(entry, "VIEW");
    if (!isView && !isType(entry, "TABLE")) {
        DXLog(QStringLiteral("Unknown"));
        return {};
    }
    auto table = std::make_shared<Table>(Table::Init{.schema = entry.schema,
                                                     .tableName = entry.objectName,
                                                     .defaultSchema = entry.defaultSchema,
                                                     .displaySchema = 1});
    if (isView)
        table->setTableType(Table::TableType::View);
    return table;
}
