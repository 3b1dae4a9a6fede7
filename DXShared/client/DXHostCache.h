// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QHash>
#include <QString>

#include <chrono>
#include <mutex>
#include <optional>

/// The addresses of the servers that connections name, looked up once. [any]
class DXSHARED_EXPORT DXHostCache final
{
public:
    static DXHostCache &sharedInstance();

    /// What to connect to for host. Empty for an empty host; an address, a list of hosts (it holds
    /// a comma), a socket folder (it begins with '/' or '@') and a pinned name are their own
    /// address. A name that is not cached yet is looked up, except on the main thread, which must
    /// not block. A name stays a name when it cannot be resolved or looked up here, or has several
    /// addresses: the client library then says so, or tries them all. So an unresolvable name never
    /// leads to another server. What a look-up found is looked up again after some minutes.
    QString cachedIPAddressForHost(const QString &host);

    /// Makes host its own address from now on, whatever else is stored for it: for connections that
    /// need the name, as when the server's certificate is checked against it.
    void pinHost(const QString &host);
    /// Stores an address that stays until another is stored, unless host is pinned.
    void setAddress(const QString &address, const QString &host);
    /// Forgets every address and pin.
    void clear();

private:
    DXHostCache() = default;
    Q_DISABLE_COPY_MOVE(DXHostCache)

    using Clock = std::chrono::steady_clock;

    struct Entry
    {
        QString address;
        Clock::time_point expires = Clock::time_point::max();
        bool isPinned = false;
    };

    std::optional<QString> storedAddress(const QString &key) const;

    std::mutex m_mutex;
    // Keyed by the name in lower case, as names are compared.
    QHash<QString, Entry> m_entries;
};
