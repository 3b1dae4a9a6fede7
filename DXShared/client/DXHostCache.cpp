// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXHostCache.h"

#include "dispatch/DXDispatch.h"

#include <QHostAddress>
#include <QHostInfo>

namespace
{

// A server that moves is found again soon; opening a tree node does not ask the resolver each time.
constexpr std::chrono::minutes FoundLifetime(5);
// Long enough for one burst of connections, short enough for a network that just came up.
constexpr std::chrono::seconds FailureLifetime(5);

bool isItsOwnAddress(const QString &host)
{
    return host.startsWith(u'/') || host.startsWith(u'@') || host.contains(u',')
           || !QHostAddress(host).isNull();
}

} // namespace

DXHostCache &DXHostCache::sharedInstance()
{
    static DXHostCache instance;
    return instance;
}

QString DXHostCache::cachedIPAddressForHost(const QString &host)
{
    if (host.isEmpty() || isItsOwnAddress(host))
        return host;
    const QString key = host.toLower();
    {
        const std::lock_guard lock(m_mutex);
        if (const auto stored = storedAddress(key))
            return stored->isEmpty() ? host : *stored;
    }
    if (DXDispatch::isMainThread())
        return host;

    const QList<QHostAddress> found = QHostInfo::fromName(host).addresses();
    const QString address = found.size() == 1 ? found.constFirst().toString() : QString();

    const std::lock_guard lock(m_mutex);
    // A pin or an address that came in during the look-up goes before what was found.
    if (const auto stored = storedAddress(key))
        return stored->isEmpty() ? host : *stored;
    const auto lifetime = found.isEmpty() ? Clock::duration(FailureLifetime) : FoundLifetime;
    m_entries.insert(key, {.address = address, .expires = Clock::now() + lifetime});
    return address.isEmpty() ? host : address;
}

// Empty for a name that stands for itself.
std::optional<QString> DXHostCache::storedAddress(const QString &key) const
{
    const auto entry = m_entries.constFind(key);
    if (entry == m_entries.constEnd() || entry->expires <= Clock::now())
        return std::nullopt;
    return entry->isPinned ? QString() : entry->address;
}

void DXHostCache::pinHost(const QString &host)
{
    const std::lock_guard lock(m_mutex);
    m_entries.insert(host.toLower(), {.address = {}, .isPinned = true});
}

void DXHostCache::setAddress(const QString &address, const QString &host)
{
    const std::lock_guard lock(m_mutex);
    Entry &entry = m_entries[host.toLower()];
    if (!entry.isPinned)
        entry = {.address = address};
}

void DXHostCache::clear()
{
    const std::lock_guard lock(m_mutex);
    m_entries.clear();
}
