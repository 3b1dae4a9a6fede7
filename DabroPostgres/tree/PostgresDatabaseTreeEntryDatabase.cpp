// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/PostgresDatabaseTreeEntryDatabase.h"

#include "client/DabroDBC.h"
#include "client/DatabaseResultSet.h"
#include "core/DXNotificationCenter.h"
#include "dispatch/DXDispatch.h"
#include "driver/PostgresCatalogueReader.h"
#include "driver/PostgresConnectionHelper.h"
#include "driver/PostgresSystemDatabaseQueries.h"
#include "editing/DXAutocompleteHelper.h"
#include "tree/PostgresDatabaseTreeEntrySchema.h"
#include "tree/PostgresTreeMenu.h"
#include "tree/PostgresTreeQuery.h"
#include "tree/PostgresTreeText.h"
#include "tree/sections/PostgresObjectSections.h"

PostgresDatabaseTreeEntryDatabase::PostgresDatabaseTreeEntryDatabase()
    : m_canRefresh(true)
    , m_groupingObserver(DXNotificationCenter::sharedInstance().observe(
          PostgresConnectionHelper::notificationName(),
          [this](const auto &) { onToggleGroupBySchema(); }))
{ }

PostgresDatabaseTreeEntryDatabase::PostgresDatabaseTreeEntryDatabase(const List &searchResults)
    : m_canRefresh(false)
{
    setChildEntries(searchResults);
}

PostgresDatabaseTreeEntryDatabase::~PostgresDatabaseTreeEntryDatabase() = default;

QString PostgresDatabaseTreeEntryDatabase::imageName() const
{
    return QStringLiteral("DatabaseTree-Database");
}

DXMenu PostgresDatabaseTreeEntryDatabase::menu()
{
    return PostgresTreeMenu(*this)
        .newQuery()
        .separator()
        .newTable()
        .separator()
        .import()
        .exportAsSQLite()
        .separator()
        .drop(PostgresTreeText::tr("Drop database"),
              &PostgresDatabaseTreeActions::confirmDropDatabase)
        .separator()
        .refresh()
        .menu();
}

void PostgresDatabaseTreeEntryDatabase::onToggleGroupBySchema()
{
    // Whoever holds the last pointer to this may be letting go of it.
    const auto self = weak_from_this();
    if (!DXDispatch::isMainThread()) {
        DXDispatch::main([self] {
            if (const auto entry = self.lock())
                static_cast<PostgresDatabaseTreeEntryDatabase &>(*entry).onToggleGroupBySchema();
        });
    } else if (const auto entry = self.lock()) {
        // The notification does not say whose setting changed.
        if (showsOtherwiseThanSet())
            entry->loadEntriesAsync(Reload::Force);
    }
}

// False for a node that nobody has opened: it takes no connection before it must.
bool PostgresDatabaseTreeEntryDatabase::showsOtherwiseThanSet() const
{
    const auto details = databaseConnectionDetails();
    if (!details)
        return false;
    const bool isGrouped = PostgresConnectionHelper::sharedInstance().groupBySchemaForDBC(*details);
    const std::lock_guard lock(m_mutex);
    return m_isGrouped && *m_isGrouped != isGrouped;
}

quint64 PostgresDatabaseTreeEntryDatabase::beginRequest(bool isGrouped)
{
    const std::lock_guard lock(m_mutex);
    m_isGrouped = isGrouped;
    m_loads += isGrouped ? 0 : 1;
    return ++m_lastRequest;
}

bool PostgresDatabaseTreeEntryDatabase::loadEntriesAsync(Reload reload)
{
    if (!m_canRefresh || (reload == Reload::IfNeeded && childEntries()))
        return false;
    const auto details = databaseConnectionDetails();
    if (const auto autocomplete = details->sharedAutocompleteHelper())
        autocomplete->requestEntriesForDatabaseConnectionDetails(*details);
    const bool isGrouped = PostgresConnectionHelper::sharedInstance().groupBySchemaForDBC(*details);
    if (isGrouped)
        loadSections();
    else
        loadSchemasAsync();
    return !isGrouped;
}

void PostgresDatabaseTreeEntryDatabase::loadSections()
{
    const List sections = PostgresObjectSections(QString());
    for (const auto &section : sections)
        adoptChild(*section);
    replaceChildren(beginRequest(true), sections, {});
    if (const auto told = delegate())
        told->databaseTreeEntryDidFinishLoading(*this);
}

void PostgresDatabaseTreeEntryDatabase::loadSchemasAsync()
{
    const quint64 request = beginRequest(false);
    setIsLoadingAsync(true);
    if (const auto told = delegate())
        told->databaseTreeEntryDidBeginLoading(*this);
    const auto self =
        std::static_pointer_cast<PostgresDatabaseTreeEntryDatabase>(shared_from_this());
    DXDispatch::background([self, request] {
        DXError error;
        const List schemas = self->loadSchemas(&error);
        DXDispatch::main(
            [self, request, schemas, error] { self->finishLoading(request, schemas, error); });
    });
}

DXDatabaseTreeEntry::List PostgresDatabaseTreeEntryDatabase::loadSchemas(DXError *error)
{
    const QString query =
        PostgresSystemDatabaseQueries::queryByTitle(QStringLiteral("Postgres_ListSchemas"));
    const auto details = databaseConnectionDetails();
    List schemas;
    DXError failure;
    PostgresCatalogueReader::read(
        *details, query,
        [&](const DatabaseResultSet &row) {
            schemas.append(std::make_shared<PostgresDatabaseTreeEntrySchema>(
                row.stringForColumnIndex(0).toText()));
            adoptChild(*schemas.constLast(), details);
        },
        &failure);
    PostgresTreeQuery::reportFailure(failure, QStringLiteral("postgres.databaseTree.loadSchemas"),
                                     query, error);
    return schemas;
}

void PostgresDatabaseTreeEntryDatabase::finishLoading(quint64 request, const List &schemas,
                                                      const DXError &error)
{
    if (error && !hasLoadedChildren())
        replaceChildren(request, {createErrorDetailsTreeEntry(error)}, {});
    else
        replaceChildren(request, schemas, error);
    {
        const std::lock_guard lock(m_mutex);
        setIsLoadingAsync(--m_loads > 0);
    }
    if (const auto told = delegate())
        told->databaseTreeEntryDidFinishLoading(*this);
}

// An answer that comes after a later request's is stale: the setting may have changed between them.
void PostgresDatabaseTreeEntryDatabase::replaceChildren(quint64 request, const List &children,
                                                        const DXError &failure)
{
    // What is replaced ends outside of the lock.
    const auto replaced = childEntries();
    const std::lock_guard lock(m_mutex);
    if (request < m_shownRequest)
        return;
    m_shownRequest = request;
    setChildEntries(children);
    setLoadFailure(failure);
}
