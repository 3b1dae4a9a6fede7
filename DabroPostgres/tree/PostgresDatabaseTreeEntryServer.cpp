// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/PostgresDatabaseTreeEntryServer.h"

#include "client/DabroDBC.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "client/DatabaseResultSet.h"
#include "core/DXCollation.h"
#include "core/DXLogHelper.h"
#include "core/MachTimer.h"
#include "dispatch/DXDispatch.h"
#include "driver/PostgresCatalogueReader.h"
#include "driver/PostgresSystemDatabaseQueries.h"
#include "editing/PostgresEnumTypeHelper.h"
#include "tree/DXDatabaseTreeContextHelper.h"
#include "tree/PostgresDatabaseTreeEntryDatabase.h"
#include "tree/PostgresTreeMenu.h"
#include "tree/PostgresTreeQuery.h"
#include "tree/PostgresTreeText.h"

#include <algorithm>
#include <utility>

namespace
{

QString failedVersion()
{
    return QStringLiteral("Failed to load version");
}

} // namespace

PostgresDatabaseTreeEntryServer::PostgresDatabaseTreeEntryServer()
    : m_canRefresh(true)
{
    setDetails(PostgresTreeText::tr("Loading version"));
}

PostgresDatabaseTreeEntryServer::PostgresDatabaseTreeEntryServer(const List &searchResults)
    : m_canRefresh(false)
{
    setDetails(PostgresTreeText::tr("Loading version"));
    setChildEntries(searchResults);
}

QStringList PostgresDatabaseTreeEntryServer::allDatabaseNames() const
{
    const std::lock_guard lock(m_mutex);
    return m_internalDatabaseNames;
}

QString PostgresDatabaseTreeEntryServer::displayName() const
{
    const auto connection = databaseConnectionDetails();
    const QString server = connection->alias().isEmpty() ? connection->host() : connection->alias();
    return QStringLiteral("%1 (%2)").arg(server, connection->username());
}

QString PostgresDatabaseTreeEntryServer::imageName() const
{
    return QStringLiteral("DatabaseTree-Server-Postgres");
}

QString PostgresDatabaseTreeEntryServer::tableCellIdentifier() const
{
    return databaseConnectionDetails()->sshTunnelModel() ? QStringLiteral("HeaderCellSSHTunnel")
                                                         : QStringLiteral("HeaderCell");
}

int PostgresDatabaseTreeEntryServer::tableCellHeight() const
{
    return databaseConnectionDetails()->sshTunnelModel() ? 45 : 34;
}

DXMenu PostgresDatabaseTreeEntryServer::menu()
{
    return PostgresTreeMenu(*this)
        .newQuery()
        .separator()
        .item(QStringLiteral("Connect"),
              [](auto &helper, const auto &entry) { helper.openConnectionDialog(entry); })
        .disconnect()
        .separator()
        .refresh()
        .menu();
}

void PostgresDatabaseTreeEntryServer::loadEntries(DXError *error)
{
    const QString query =
        PostgresSystemDatabaseQueries::queryByTitle(QStringLiteral("Postgres_ListDatabases"));
    const auto details = databaseConnectionDetails();
    const bool isListed = details->database().isEmpty();
    QStringList names;
    const auto add = [&](const DatabaseResultSet &row) {
        names.append(row.stringForColumnIndex(0).toText());
    };
    DXError failure;
    DabroDatabaseConnectionPool::executeQuery(
        [&](DabroDatabaseClient &client, DXError *slot) {
            readVersion(client);
            if (isListed)
                PostgresCatalogueReader::read(client, query, add, slot);
        },
        *details, &failure);
    // A database that cannot be opened is shown all the same, unless nothing of the server can.
    if (!failure || (!isListed && canReachServer()))
        showDatabases(isListed ? names : QStringList{details->database()});
    else
        setDetails(failedVersion());
    PostgresTreeQuery::reportFailure(failure, QStringLiteral("postgres.databaseTree.loadDatabases"),
                                     query, error);
}

void PostgresDatabaseTreeEntryServer::readVersion(DabroDatabaseClient &client)
{
    DXError failure;
    PostgresCatalogueReader::read(
        client,
        PostgresSystemDatabaseQueries::queryByTitle(QStringLiteral("Postgres_ServerDetails")),
        [this](const DatabaseResultSet &row) { setDetails(row.stringForColumnIndex(0).toText()); },
        &failure);
    if (failure)
        setDetails(failedVersion());
}

// Asked of the database that the server itself would choose.
bool PostgresDatabaseTreeEntryServer::canReachServer()
{
    const auto elsewhere = databaseConnectionDetails()->copy();
    elsewhere->setDatabase({});
    return DabroDatabaseConnectionPool::executeQuery(
        [this](DabroDatabaseClient &client, DXError *) { readVersion(client); }, *elsewhere,
        nullptr);
}

void PostgresDatabaseTreeEntryServer::showDatabases(QStringList names)
{
    names.removeDuplicates();
    QStringList sorted = names;
    std::stable_sort(sorted.begin(), sorted.end(), [](const QString &left, const QString &right) {
        return left.compare(right, Qt::CaseInsensitive) < 0;
    });
    List databases;
    for (const QString &name : std::as_const(sorted))
        databases.append(makeDatabase(name));
    setChildEntries(databases);
    {
        QStringList read = DXCollation::sorted(names);
        const std::lock_guard lock(m_mutex);
        m_internalDatabaseNames.swap(read);
    }
    for (const auto &database : std::as_const(databases))
        PostgresEnumTypeHelper::requestEnumTypesForDatabaseConnection(
            *database->databaseConnectionDetails());
}

std::shared_ptr<DXDatabaseTreeEntry>
PostgresDatabaseTreeEntryServer::makeDatabase(const QString &name)
{
    auto database = std::make_shared<PostgresDatabaseTreeEntryDatabase>();
    database->setDatabaseName(name);
    database->setDisplayName(name);
    adoptChild(*database);
    database->databaseConnectionDetails()->setDatabase(name);
    return database;
}

void PostgresDatabaseTreeEntryServer::didLoadEntries()
{
    DXDispatch::background([weak = weak_from_this()] {
        if (const auto self = weak.lock())
            static_cast<PostgresDatabaseTreeEntryServer &>(*self).refreshSearch();
    });
}

void PostgresDatabaseTreeEntryServer::refreshSearch()
{
    // A load that ends while another's refresh is under way starts none of its own: its databases
    // are refreshed by the one that is.
    std::shared_ptr<const List> searched;
    while (searched != childEntries() && m_searchLoadSemaphore.tryWait()) {
        searched = childEntries();
        updateSearchEntries(searched, nullptr);
        m_searchLoadSemaphore.signal();
    }
    if (!searched)
        return;
    // Behind what the databases have queued for that thread.
    DXDispatch::main([self = shared_from_this()] {
        if (const auto told = self->delegate())
            told->databaseTreeEntryDidUpdateSearchResults(*self);
    });
}

bool PostgresDatabaseTreeEntryServer::updateSearchEntries(
    const std::shared_ptr<const List> &databases, DXError *error)
{
    Q_UNUSED(error)
    if (!databases || databases->isEmpty())
        return true;
    DXLog(QStringLiteral("Want to filter %1 search results.").arg(databases->size()));
    const MachTimer timer;
    qsizetype count = 0;
    for (const auto &database : *databases)
        count += database->updateSearchResults(nullptr) ? 1 : 0;
    DXLog(QStringLiteral("Postgres updateSearchEntries (%1 databases) took: %2 seconds.")
              .arg(QString::number(count), QString::number(timer.elapsedSeconds(), 'f', 2)));
    return true;
}

std::shared_ptr<DXDatabaseTreeEntry>
PostgresDatabaseTreeEntryServer::copyWithSearchResults(const QString &search) const
{
    const auto databases = childEntries();
    if (!databases)
        return {};
    std::mutex mutex;
    List found;
    DXDispatch::apply(databases->size(), [&](qsizetype index) {
        if (const auto copy = databases->at(index)->copyWithSearchResults(search)) {
            const std::lock_guard lock(mutex);
            found.append(copy);
        }
    });
    if (found.isEmpty())
        return {};
    const auto copy = std::make_shared<PostgresDatabaseTreeEntryServer>(found);
    copy->setDatabaseConnectionDetails(databaseConnectionDetails()->copy());
    copy->setDetails(details());
    copy->setDelegate(delegate());
    copy->setContextHelper(contextHelper());
    for (const auto &database : std::as_const(found)) {
        database->setParent(copy);
        database->setDelegate(delegate());
    }
    return copy;
}
