// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeEntry.h"
#include "tree/PostgresSearchIndex.h"

#include <optional>

/// A database: either its six sections over all schemas or its schemas with theirs, as the
/// connection is set; it follows the setting.
class PostgresDatabaseTreeEntryDatabase final : public DXDatabaseTreeEntry
{
public:
    PostgresDatabaseTreeEntryDatabase();
    /// A copy that holds what a search found and never loads. The selector is
    /// `initWithSearchResults:`.
    explicit PostgresDatabaseTreeEntryDatabase(const List &searchResults);
    ~PostgresDatabaseTreeEntryDatabase() override;

    /// Set by whoever makes the node.
    QString databaseName() const { return m_databaseName; }
    void setDatabaseName(const QString &name) { m_databaseName = name; }

    /// What searches look through; nothing before the first refresh. [any]
    std::shared_ptr<const PostgresSearchIndex> searchResults() const;
    void setSearchResults(const std::shared_ptr<const PostgresSearchIndex> &searchResults);

    QString imageName() const override;
    DXMenu menu() override;
    bool canHaveChildren() const override { return true; }
    /// The sections are there when it returns false; schemas are loaded in the background, and the
    /// answer is taken on the main thread unless a later request's is there already. [any]
    bool loadEntriesAsync(Reload reload) override;
    bool updateSearchResults(DXError *error) override;
    std::shared_ptr<DXDatabaseTreeEntry>
    copyWithSearchResults(const QString &search) const override;

private:
    void onToggleGroupBySchema();
    bool showsOtherwiseThanSet() const;
    quint64 beginRequest(bool isGrouped);
    void loadSections();
    void loadSchemasAsync();
    /// The selector is `loadSchemas:withError:`. *Slot decides*: what came before a failure is
    /// returned with it. [background]
    List loadSchemas(DXError *error);
    void finishLoading(quint64 request, const List &schemas, const DXError &error);
    void replaceChildren(quint64 request, const List &children, const DXError &failure);
    QList<PostgresSearchIndex::Entry> readSearchEntries(DXError *error) const;
    std::shared_ptr<DXDatabaseTreeEntry> makeHit(const PostgresSearchIndex::Entry &entry) const;

    const bool m_canRefresh;
    QString m_databaseName;
    mutable std::mutex m_mutex;
    std::shared_ptr<const PostgresSearchIndex> m_searchResults;
    // How the last request for children grouped; nothing before the first.
    std::optional<bool> m_isGrouped;
    // The last request for children, and the one whose answer is shown.
    quint64 m_lastRequest = 0;
    quint64 m_shownRequest = 0;
    int m_loads = 0;
    // Last, so that nobody calls while the rest goes.
    std::shared_ptr<void> m_groupingObserver;
};
