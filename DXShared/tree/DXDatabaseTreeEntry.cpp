// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/DXDatabaseTreeEntry.h"

#include "client/DabroDBC.h"
#include "dispatch/DXDispatch.h"

#include <utility>

DXDatabaseTreeEntryDelegate::~DXDatabaseTreeEntryDelegate() = default;

void DXDatabaseTreeEntryDelegate::databaseTreeEntryDidUpdateSearchResults(
    DXDatabaseTreeEntry &entry)
{
    Q_UNUSED(entry)
}

DXDatabaseTreeEntry::DXDatabaseTreeEntry() = default;
DXDatabaseTreeEntry::~DXDatabaseTreeEntry() = default;

std::shared_ptr<DXDatabaseTreeContextHelper> DXDatabaseTreeEntry::contextHelper() const
{
    if (auto helper = m_contextHelper.lock())
        return helper;
    const auto above = parent();
    return above ? above->contextHelper() : nullptr;
}

QString DXDatabaseTreeEntry::details() const
{
    const std::lock_guard lock(m_mutex);
    return m_details;
}

void DXDatabaseTreeEntry::setDetails(const QString &details)
{
    QString swapped = details;
    const std::lock_guard lock(m_mutex);
    m_details.swap(swapped);
}

DXError DXDatabaseTreeEntry::loadFailure() const
{
    const std::lock_guard lock(m_mutex);
    return m_loadFailure;
}

void DXDatabaseTreeEntry::setLoadFailure(const DXError &error)
{
    DXError swapped = error;
    const std::lock_guard lock(m_mutex);
    std::swap(m_loadFailure, swapped);
}

bool DXDatabaseTreeEntry::hasLoadedChildren() const
{
    const auto children = childEntries();
    return children && !children->isEmpty() && !children->constFirst()->isFailureLeaf();
}

std::shared_ptr<const DXDatabaseTreeEntry::List> DXDatabaseTreeEntry::childEntries() const
{
    const std::lock_guard lock(m_mutex);
    return m_children;
}

bool DXDatabaseTreeEntry::loadEntriesAsync(Reload reload)
{
    if (!canRefresh() || (reload == Reload::IfNeeded && childEntries()))
        return false;
    if (m_dataLoadSemaphore.test_and_set())
        return true;
    m_isLoading = true;
    if (const auto told = delegate())
        told->databaseTreeEntryDidBeginLoading(*this);
    if (DXDispatch::background([self = shared_from_this()] { self->load(); }))
        return true;
    finishLoading();
    return false;
}

void DXDatabaseTreeEntry::load()
{
    DXError error;
    // What was added or removed while a load was on its way may be missing from its answer, or be
    // in it still.
    quint64 changes = 0;
    do {
        changes = m_changes;
        error = {};
        loadEntries(&error);
    } while (!error && changes != m_changes);
    const bool isKept = hasLoadedChildren();
    if (error && !isKept)
        setChildEntries({createErrorDetailsTreeEntry(error)});
    setLoadFailure(isKept ? error : DXError());
    finishLoading();
    didLoadEntries();
}

void DXDatabaseTreeEntry::finishLoading()
{
    m_isLoading = false;
    if (const auto told = delegate())
        told->databaseTreeEntryDidFinishLoading(*this);
    m_dataLoadSemaphore.clear();
}

void DXDatabaseTreeEntry::removeChild(const DXDatabaseTreeEntry &child)
{
    changeChildEntries([&child](List children) {
        children.removeIf([&](const auto &entry) { return entry.get() == &child; });
        return children;
    });
}

void DXDatabaseTreeEntry::prepareCell(ColumnDetailsTableCellView &cell) const
{
    Q_UNUSED(cell)
}

std::shared_ptr<DXDatabaseTreeEntry>
DXDatabaseTreeEntry::copyWithSearchResults(const QString &search) const
{
    Q_UNUSED(search)
    return {};
}

bool DXDatabaseTreeEntry::updateSearchResults(DXError *error)
{
    Q_UNUSED(error)
    return false;
}

void DXDatabaseTreeEntry::loadEntries(DXError *error)
{
    Q_UNUSED(error)
}

void DXDatabaseTreeEntry::setChildEntries(const List &children)
{
    // The old children end outside of the lock: they may be the last to hold much.
    std::shared_ptr<const List> swapped = std::make_shared<const List>(children);
    const std::lock_guard lock(m_mutex);
    m_children.swap(swapped);
}

void DXDatabaseTreeEntry::changeChildEntries(const std::function<List(const List &)> &change)
{
    ++m_changes;
    while (const auto children = childEntries()) {
        std::shared_ptr<const List> swapped = std::make_shared<const List>(change(*children));
        const std::lock_guard lock(m_mutex);
        if (m_children != children)
            continue;
        m_children.swap(swapped);
        return;
    }
}

void DXDatabaseTreeEntry::adoptChild(DXDatabaseTreeEntry &child)
{
    adoptChild(child, m_connectionDetails ? m_connectionDetails->copy() : nullptr);
}

void DXDatabaseTreeEntry::adoptChild(DXDatabaseTreeEntry &child,
                                     const std::shared_ptr<DabroDBC> &details)
{
    child.setParent(weak_from_this());
    child.setDelegate(m_delegate);
    child.setDatabaseConnectionDetails(details);
}

std::shared_ptr<DXDatabaseTreeEntry>
DXDatabaseTreeEntry::createErrorDetailsTreeEntry(const DXError &error)
{
    auto leaf = std::make_shared<DXDatabaseTreeEntry>();
    adoptChild(*leaf);
    leaf->setDisplayName(error.description().trimmed());
    leaf->setLoadFailure(error);
    leaf->setImageName(QStringLiteral("DatabaseTree-Error"));
    return leaf;
}
