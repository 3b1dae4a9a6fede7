// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeEntry.h"

#include <QHash>
#include <QQueue>

#include <functional>
#include <memory>

/// Loads a catalogue tree to some depth, a few nodes at a time: the delegate of its nodes. Owned by
/// a shared pointer. [main]
class CliTreeLoader final : public DXDatabaseTreeEntryDelegate,
                            public std::enable_shared_from_this<CliTreeLoader>
{
public:
    using Done = std::function<void()>;

    /// Loads what is not loaded yet of entry's children, their children and so on, depth levels of
    /// them; then calls done. One load at a time.
    void load(const std::shared_ptr<DXDatabaseTreeEntry> &entry, int depth, const Done &done);
    /// Called once the search of a root that was loaded is up to date.
    void setSearchUpdated(const Done &searchUpdated) { m_searchUpdated = searchUpdated; }

    /// [any]
    void databaseTreeEntryDidBeginLoading(DXDatabaseTreeEntry &entry) override;
    void databaseTreeEntryDidFinishLoading(DXDatabaseTreeEntry &entry) override;
    void databaseTreeEntryDidUpdateSearchResults(DXDatabaseTreeEntry &entry) override;

private:
    struct Node
    {
        std::shared_ptr<DXDatabaseTreeEntry> entry;
        int depth = 0;
    };
    void loadNext();
    void loaded(const DXDatabaseTreeEntry *entry);

    QQueue<Node> m_queue;
    QHash<const DXDatabaseTreeEntry *, Node> m_underWay;
    Done m_done;
    Done m_searchUpdated;
};
