// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dispatch/DXSemaphore.h"
#include "tree/DatabaseTreeEntryServerRoot.h"

class DabroDatabaseClient;

/// The root of a connection's tree: the server with the databases that one may connect to, or the
/// one that the connection names.
class PostgresDatabaseTreeEntryServer final : public DatabaseTreeEntryServerRoot
{
public:
    PostgresDatabaseTreeEntryServer();
    /// A copy that holds what a search found and never loads. The selector is
    /// `initWithSearchResults:`.
    explicit PostgresDatabaseTreeEntryServer(const List &searchResults);

    QStringList allDatabaseNames() const override;
    QString serverVersion() const override { return details(); }

    /// The connection's alias, or its host, and its user.
    QString displayName() const override;
    QString imageName() const override;
    QString tableCellIdentifier() const override;
    int tableCellHeight() const override;
    DXMenu menu() override;
    bool canHaveChildren() const override { return true; }

    /// Fetches anew what searches look through, one database after the other; it fails for none of
    /// them. [background]
    bool updateSearchEntries(const std::shared_ptr<const List> &databases, DXError *error);
    /// The databases in the order in which their copies are done.
    std::shared_ptr<DXDatabaseTreeEntry>
    copyWithSearchResults(const QString &search) const override;

protected:
    bool canRefresh() const override { return m_canRefresh; }
    /// `loadDatabases:error:`.
    void loadEntries(DXError *error) override;
    /// Refreshes the search.
    void didLoadEntries() override;

private:
    void readVersion(DabroDatabaseClient &client);
    bool canReachServer();
    void showDatabases(QStringList names);
    std::shared_ptr<DXDatabaseTreeEntry> makeDatabase(const QString &name);
    void refreshSearch();

    const bool m_canRefresh;
    mutable std::mutex m_mutex;
    QStringList m_internalDatabaseNames;
    DXSemaphore m_searchLoadSemaphore{1};
};
