// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DabroPostgres/driver/ServerAccess.h"
#include "cli/tree/CliTreeLoader.h"
#include "tree/PostgresDatabaseTreeActions.h"
#include "tree/PostgresDatabaseTreeEntryServer.h"

/// A catalogue tree of a connection, loaded and looked at by tests. [main]
class CatalogueTree final
{
public:
    using Entry = std::shared_ptr<DXDatabaseTreeEntry>;

    explicit CatalogueTree(const ServerAccess::Record &details);

    const std::shared_ptr<PostgresDatabaseTreeEntryServer> &root() const { return m_root; }
    /// Loads entry's children, depth levels of them, and waits.
    void load(const Entry &entry, int depth = 1);
    /// Loads entry's children anew and waits until it is done, and once more for the main thread.
    void reload(const Entry &entry);
    /// The node that names lead to from the root, loading what is on the way. Fails the running
    /// test, and is the root, when there is none.
    Entry node(const QStringList &names);
    /// Waits until the search of the last load is up to date.
    void awaitSearch();

    static QStringList namesBelow(const Entry &entry);
    /// What entry shows, with kinds, as far as it is loaded.
    static QString text(const Entry &entry);

private:
    const std::shared_ptr<CliTreeLoader> m_loader = std::make_shared<CliTreeLoader>();
    const std::shared_ptr<PostgresDatabaseTreeEntryServer> m_root =
        std::make_shared<PostgresDatabaseTreeEntryServer>();
};
