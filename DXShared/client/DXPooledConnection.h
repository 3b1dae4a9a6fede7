// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DabroDatabaseClient.h"
#include "core/DXGlobal.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

/// A connected client of a pool. It belongs to its borrower, or to the pool while it idles; only
/// cancel() is for others.
class DXPooledConnection final
{
public:
    using Clock = std::chrono::steady_clock;

    DXPooledConnection(std::shared_ptr<DabroDatabaseClient> connected, std::size_t ofGeneration)
        : generation(ofGeneration)
        , m_client(std::move(connected))
    { }

    /// The client, until close().
    DabroDatabaseClient &client() { return *m_client; }
    /// Stops what the client runs; nothing once it is closed. [any]
    void cancel()
    {
        const std::lock_guard lock(m_mutex);
        if (m_client)
            m_client->cancelCurrentQuery(nullptr);
    }
    /// Disconnects and destroys the client, after a cancel() under way.
    void close()
    {
        const std::lock_guard lock(m_mutex);
        m_client->disconnect();
        m_client.reset();
    }

    /// Which of a key's generations it is of: disconnectAll() begins a new one.
    const std::size_t generation;
    /// The thread that it is lent to.
    std::thread::id borrower;
    /// When the user last had use of it.
    Clock::time_point lastUse = Clock::now();

private:
    Q_DISABLE_COPY_MOVE(DXPooledConnection)

    std::mutex m_mutex;
    std::shared_ptr<DabroDatabaseClient> m_client;
};
