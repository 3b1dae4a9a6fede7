// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXClientPool.h"

#include "client/DXPooledConnection.h"
#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "dispatch/DXDispatch.h"

#include <QScopeGuard>

#include <algorithm>
#include <thread>
#include <utility>
#include <vector>

namespace
{

using Clock = DXPooledConnection::Clock;

// A query that runs longer than this after a cancel has missed it.
constexpr std::chrono::milliseconds CancelInterval(100);

// Connections that the current thread has borrowed, of whatever key.
thread_local int borrowedHere = 0;

} // namespace

// The connections of one key. Guarded by the pool's mutex.
struct DXClientPool::Session
{
    std::vector<std::shared_ptr<DXPooledConnection>> idle;
    std::vector<std::shared_ptr<DXPooledConnection>> lent;
    // These, and those that are being opened, checked or closed.
    std::size_t count = 0;
    // Those of the count that are on their way out and make no other one superfluous.
    std::size_t closing = 0;
    // Connections of an earlier generation are closed when they come back.
    std::size_t generation = 0;
};

// What a timer can hold on to while the pool may go.
struct DXClientPool::Sweeper
{
    void sweep()
    {
        const std::lock_guard lock(mutex);
        if (pool)
            pool->closeExpired();
    }

    std::mutex mutex;
    DXClientPool *pool;
};

DXClientPool::DXClientPool(const Limits &limits)
    : m_limits(limits)
    , m_sweeper(std::make_shared<Sweeper>())
{
    m_sweeper->pool = this;
}

DXClientPool::~DXClientPool()
{
    shutdown();
    const std::lock_guard lock(m_sweeper->mutex);
    m_sweeper->pool = nullptr;
}

bool DXClientPool::executeQuery(const Block &block, const DabroDBC &connectionDetails,
                                DXError *error, const Options &options)
{
    using Pool = DabroDatabaseConnectionPool;
    const std::shared_ptr<Session> session = sessionFor(connectionDetails.sessionKey());
    const Source source =
        options.allowPooled == Pool::AllowPooled::Yes ? Source::IdleOrNew : Source::New;
    DXError failure;
    const bool broke = runOnce(*session, source, block, connectionDetails, options, &failure);
    if (failure && broke && options.retryOnError == Pool::RetryOnError::Yes) {
        failure = {};
        runOnce(*session, Source::New, block, connectionDetails, options, &failure);
    }
    if (failure)
        DXError::report(error, failure);
    return !failure;
}

std::shared_ptr<DXClientPool::Session> DXClientPool::sessionFor(const QByteArray &key)
{
    const std::lock_guard lock(m_mutex);
    std::shared_ptr<Session> &session = m_sessions[key];
    if (!session)
        session = std::make_shared<Session>();
    return session;
}

// True when the connection broke under block.
bool DXClientPool::runOnce(Session &session, Source source, const Block &block,
                           const DabroDBC &details, const Options &options, DXError *failure)
{
    using Pool = DabroDatabaseConnectionPool;
    const auto connection = take(session, source, details, failure);
    if (!connection)
        return false;
    // Closed unless found to be fit for others, also when block leaves by an exception.
    bool isReusable = false;
    ++borrowedHere;
    const auto givingBack = qScopeGuard([&] {
        --borrowedHere;
        giveBack(session, connection, isReusable);
    });
    block(connection->client(), failure);
    const bool isAlive = connection->client().isAlive();
    if (options.isUserQuery == Pool::IsUserQuery::Yes)
        connection->lastUse = Clock::now();
    isReusable = isAlive && options.allowPooled == Pool::AllowPooled::Yes;
    return !isAlive;
}

std::shared_ptr<DXPooledConnection> DXClientPool::take(Session &session, Source source,
                                                       const DabroDBC &details, DXError *error)
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        if (m_refusal.isSet) {
            DXError::report(error, DXError(QStringLiteral("pool.shutdown"), 0,
                                           QStringLiteral("The query was not run, because the "
                                                          "program is closing down.")));
            return {};
        }
        std::shared_ptr<DXPooledConnection> connection;
        if (source == Source::IdleOrNew && !session.idle.empty()) {
            connection = std::move(session.idle.back());
            session.idle.pop_back();
            lock.unlock();
            const bool isAlive = connection->client().isAlive();
            lock.lock();
            if (!isAlive) {
                discard(session, connection, lock);
                continue;
            }
        } else if (session.count < m_limits.connections || borrowedHere > 0) {
            connection = connectNew(session, details, lock, error);
            if (!connection)
                return {};
        } else {
            // A new one is asked for, and only the idle ones can make room without waiting.
            if (session.idle.empty())
                m_changed.wait(lock);
            else
                discardIdle(session, lock);
            continue;
        }
        if (m_refusal.isSet || connection->generation != session.generation) {
            discard(session, connection, lock);
            continue;
        }
        connection->borrower = std::this_thread::get_id();
        session.lent.push_back(connection);
        return connection;
    }
}

std::shared_ptr<DXPooledConnection> DXClientPool::connectNew(Session &session,
                                                             const DabroDBC &details,
                                                             std::unique_lock<std::mutex> &lock,
                                                             DXError *error)
{
    ++session.count;
    const std::size_t generation = session.generation;
    lock.unlock();
    std::unique_ptr<DabroDatabaseClient> client = details.createNewClient();
    DXError failure;
    const bool isConnected = client->connect(&failure, &m_refusal);
    if (!isConnected)
        client.reset();
    lock.lock();
    if (isConnected)
        return std::make_shared<DXPooledConnection>(std::move(client), generation);
    --session.count;
    m_changed.notify_all();
    if (!failure)
        failure = DXError(QStringLiteral("pool.connect"), 0,
                          QStringLiteral("Connecting to %1 failed.").arg(details.description()));
    DXError::report(error, failure);
    return {};
}

void DXClientPool::giveBack(Session &session, const std::shared_ptr<DXPooledConnection> &connection,
                            bool isReusable)
{
    DabroDatabaseClient &client = connection->client();
    if (isReusable && client.isInTransaction())
        isReusable = client.resetSession(nullptr) && !client.isInTransaction();

    std::unique_lock lock(m_mutex);
    std::erase(session.lent, connection);
    if (isReusable && !m_refusal.isSet && connection->generation == session.generation
        && session.count - session.closing <= m_limits.connections) {
        session.idle.push_back(connection);
        scheduleSweep();
        m_changed.notify_all();
    } else {
        discard(session, connection, lock);
    }
}

// Closing may talk to the server, so it happens unlocked; the connection counts until it is gone.
void DXClientPool::discard(Session &session, const std::shared_ptr<DXPooledConnection> &connection,
                           std::unique_lock<std::mutex> &lock)
{
    ++session.closing;
    lock.unlock();
    connection->close();
    lock.lock();
    --session.closing;
    --session.count;
    m_changed.notify_all();
}

void DXClientPool::discardIdle(Session &session, std::unique_lock<std::mutex> &lock)
{
    const std::shared_ptr<DXPooledConnection> longestIdle = std::move(session.idle.front());
    session.idle.erase(session.idle.begin());
    discard(session, longestIdle, lock);
}

void DXClientPool::adopt(const std::shared_ptr<DabroDatabaseClient> &client)
{
    const auto session = sessionFor(client->databaseConnectionDetails()->sessionKey());
    {
        const std::lock_guard lock(m_mutex);
        if (!m_refusal.isSet && session->count < m_limits.connections) {
            ++session->count;
            session->idle.push_back(
                std::make_shared<DXPooledConnection>(client, session->generation));
            scheduleSweep();
            return;
        }
    }
    DXDispatch::background([client] { client->disconnect(); });
}

void DXClientPool::disconnectAll(const DabroDBC &connectionDetails)
{
    const std::shared_ptr<Session> session = sessionFor(connectionDetails.sessionKey());
    std::unique_lock lock(m_mutex);
    ++session->generation;
    while (!session->idle.empty())
        discardIdle(*session, lock);
}

void DXClientPool::shutdown()
{
    std::unique_lock lock(m_mutex);
    m_refusal.isSet = true;
    m_changed.notify_all();
    const auto sessions = m_sessions.values();
    for (const auto &session : sessions)
        while (!session->idle.empty())
            discardIdle(*session, lock);

    const auto isOfOther = [self = std::this_thread::get_id()](const auto &connection) {
        return connection->borrower != self;
    };
    const Clock::time_point deadline = Clock::now() + m_limits.shutdown;
    for (;;) {
        std::vector<std::shared_ptr<DXPooledConnection>> lent;
        for (const auto &session : sessions)
            std::copy_if(session->lent.begin(), session->lent.end(), std::back_inserter(lent),
                         isOfOther);
        if (lent.empty() || Clock::now() >= deadline)
            return;
        lock.unlock();
        for (const auto &connection : lent)
            connection->cancel();
        lock.lock();
        m_changed.wait_for(lock, CancelInterval);
    }
}

void DXClientPool::closeExpired()
{
    std::unique_lock lock(m_mutex);
    m_isSweepScheduled = false;
    const Clock::time_point expired = Clock::now() - m_limits.idle;
    bool anyIdle = false;
    const auto sessions = m_sessions.values();
    for (const auto &session : sessions) {
        std::vector<std::shared_ptr<DXPooledConnection>> closing;
        std::erase_if(session->idle, [&](const auto &connection) {
            if (connection->lastUse > expired)
                return false;
            closing.push_back(connection);
            return true;
        });
        for (const auto &connection : closing)
            discard(*session, connection, lock);
        anyIdle = anyIdle || !session->idle.empty();
    }
    if (anyIdle)
        scheduleSweep();
}

void DXClientPool::scheduleSweep()
{
    if (!m_isSweepScheduled)
        m_isSweepScheduled = DXDispatch::backgroundAfter(
            m_limits.sweep, [sweeper = m_sweeper] { sweeper->sweep(); });
}
