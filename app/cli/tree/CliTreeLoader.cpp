// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/tree/CliTreeLoader.h"

#include "dispatch/DXDispatch.h"

#include <utility>

namespace
{
// Each load takes a connection; more of them would only wait for one.
constexpr qsizetype mostAtATime = 4;
} // namespace

void CliTreeLoader::load(const std::shared_ptr<DXDatabaseTreeEntry> &entry, int depth,
                         const Done &done)
{
    DX_ASSERT_MAIN();
    m_done = done;
    m_queue.enqueue({entry, depth});
    loadNext();
}

void CliTreeLoader::loadNext()
{
    while (!m_queue.isEmpty() && m_underWay.size() < mostAtATime) {
        const Node node = m_queue.dequeue();
        if (node.depth <= 0 || !node.entry->canHaveChildren())
            continue;
        m_underWay.insert(node.entry.get(), node);
        if (!node.entry->loadEntriesAsync(DXDatabaseTreeEntry::Reload::IfNeeded))
            loaded(node.entry.get());
    }
    // done() may begin another load.
    if (m_queue.isEmpty() && m_underWay.isEmpty() && m_done)
        std::exchange(m_done, nullptr)();
}

void CliTreeLoader::loaded(const DXDatabaseTreeEntry *entry)
{
    // Nodes also tell of changes that no load brought.
    const auto found = m_underWay.constFind(entry);
    if (found == m_underWay.constEnd() || found->entry->isLoadingAsync())
        return;
    const Node node = m_underWay.take(entry);
    const auto children = node.entry->childEntries();
    if (!children)
        return;
    for (const auto &child : *children)
        m_queue.enqueue({child, node.depth - 1});
}

void CliTreeLoader::databaseTreeEntryDidBeginLoading(DXDatabaseTreeEntry &entry)
{
    Q_UNUSED(entry)
}

void CliTreeLoader::databaseTreeEntryDidFinishLoading(DXDatabaseTreeEntry &entry)
{
    DXDispatch::main([self = shared_from_this(), finished = &entry] {
        self->loaded(finished);
        self->loadNext();
    });
}

void CliTreeLoader::databaseTreeEntryDidUpdateSearchResults(DXDatabaseTreeEntry &entry)
{
    Q_UNUSED(entry)
    if (m_searchUpdated)
        std::exchange(m_searchUpdated, nullptr)();
}
