// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DabroDatabaseConnectionPool.h"
#include "client/ssh/DXSSHTunnel.h"
#include "core/DXGlobal.h"

#include <QByteArray>
#include <QHash>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>

class DXPooledConnection;

/// The machinery of DabroDatabaseConnectionPool, which is one of these: there stands what each
/// operation means. All [any] here; the pool's own asserts guard the main thread.
class DXSHARED_EXPORT DXClientPool final
{
public:
    using Block = DabroDatabaseConnectionPool::Block;
    using Options = DabroDatabaseConnectionPool::Options;

    struct Limits
    {
        /// The most connections that a key has. A thread that holds a connection already never
        /// waits for another: it gets one beyond this bound, closed when it comes back.
        std::size_t connections = 8;
        /// How long a connection may idle. The first query on a new one costs a server 100 ms, so
        /// that browsing a tree should not meet new ones all the time.
        std::chrono::milliseconds idle = std::chrono::minutes(5);
        /// How often idle ones are looked at.
        std::chrono::milliseconds sweep = std::chrono::minutes(1);
        /// How long shutdown() waits for blocks to end once their queries were cancelled.
        std::chrono::milliseconds shutdown = std::chrono::seconds(10);
    };

    DXClientPool()
        : DXClientPool(Limits())
    { }
    explicit DXClientPool(const Limits &limits);
    /// Shuts down. No block may run any more.
    ~DXClientPool();

    bool executeQuery(const Block &block, const DabroDBC &connectionDetails, DXError *error,
                      const Options &options);
    void adopt(const std::shared_ptr<DabroDatabaseClient> &client);
    void disconnectAll(const DabroDBC &connectionDetails);
    /// Cancels again and again what blocks of other threads run, since a block between two queries
    /// misses a cancel, until they have ended or the limit is over.
    void shutdown();

private:
    Q_DISABLE_COPY_MOVE(DXClientPool)

    struct Session;
    struct Sweeper;
    enum class Source { IdleOrNew, New };

    // Set at shutdown, under the mutex; tunnels that are opening look at it without.
    struct Refusal final : DXSSHDelegate
    {
        bool sshShouldCancel() const override { return isSet; }

        std::atomic<bool> isSet = false;
    };

    std::shared_ptr<Session> sessionFor(const QByteArray &key);
    bool runOnce(Session &session, Source source, const Block &block, const DabroDBC &details,
                 const Options &options, DXError *failure);
    std::shared_ptr<DXPooledConnection> take(Session &session, Source source,
                                             const DabroDBC &details, DXError *error);
    std::shared_ptr<DXPooledConnection> connectNew(Session &session, const DabroDBC &details,
                                                   std::unique_lock<std::mutex> &lock,
                                                   DXError *error);
    void giveBack(Session &session, const std::shared_ptr<DXPooledConnection> &connection,
                  bool isReusable);
    void discard(Session &session, const std::shared_ptr<DXPooledConnection> &connection,
                 std::unique_lock<std::mutex> &lock);
    void discardIdle(Session &session, std::unique_lock<std::mutex> &lock);
    void closeExpired();
    void scheduleSweep();

    const Limits m_limits;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    QHash<QByteArray, std::shared_ptr<Session>> m_sessions;
    Refusal m_refusal;
    bool m_isSweepScheduled = false;
    const std::shared_ptr<Sweeper> m_sweeper;
};
