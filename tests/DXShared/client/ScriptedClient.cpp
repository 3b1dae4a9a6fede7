// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DXShared/client/ScriptedClient.h"

#include "client/ssh/DXSSHTunnel.h"

#include <algorithm>
#include <thread>

namespace
{

bool fail(DXError *error, const QString &description)
{
    DXError::report(error, DXError(QStringLiteral(""), 0, description));
    return false;
}

} // namespace

void ScriptedServer::restart(bool staysDown)
{
    const std::lock_guard lock(m_mutex);
    ++m_epoch;
    m_isDown = staysDown;
}

void ScriptedServer::setResetWorks(bool works)
{
    const std::lock_guard lock(m_mutex);
    m_resetWorks = works;
}

void ScriptedServer::setStalls()
{
    const std::lock_guard lock(m_mutex);
    m_stalls = true;
}

int ScriptedServer::sessionsEver() const
{
    const std::lock_guard lock(m_mutex);
    return m_ever;
}

int ScriptedServer::sessionsOpen() const
{
    const std::lock_guard lock(m_mutex);
    return m_open;
}

int ScriptedServer::mostSessions() const
{
    const std::lock_guard lock(m_mutex);
    return m_most;
}

bool ScriptedClient::connect(DXError *error, DXSSHDelegate *sshDelegate)
{
    std::unique_lock lock(m_server.m_mutex);
    while (m_server.m_stalls) {
        if (sshDelegate->sshShouldCancel())
            return fail(error, QStringLiteral("given up"));
        lock.unlock();
        m_server.stalled.open();
        std::this_thread::yield();
        lock.lock();
    }
    if (m_server.m_isDown)
        return fail(error, QStringLiteral("down"));
    m_epoch = m_server.m_epoch;
    m_isConnected = true;
    ++m_server.m_ever;
    m_server.m_most = std::max(m_server.m_most, ++m_server.m_open);
    return true;
}

void ScriptedClient::disconnect()
{
    const std::lock_guard lock(m_server.m_mutex);
    m_server.m_open -= m_isConnected ? 1 : 0;
    m_isConnected = false;
}

bool ScriptedClient::isAlive() const
{
    const std::lock_guard lock(m_server.m_mutex);
    return m_isConnected && m_epoch == m_server.m_epoch;
}

bool ScriptedClient::resetSession(DXError *error)
{
    const std::lock_guard lock(m_server.m_mutex);
    if (!m_server.m_resetWorks)
        return fail(error, QStringLiteral("cannot reset"));
    m_isInTransaction = false;
    return true;
}

bool ScriptedClient::executeNonQuery(const QString &query, DXError *error)
{
    ++statements;
    if (query == u"begin")
        m_isInTransaction = true;
    if (query == u"die")
        m_server.restart();
    std::unique_lock lock(m_server.m_mutex);
    if (query == u"sleep") {
        m_isSleeping = true;
        const bool isCancelled =
            m_server.m_cancelled.wait_for(lock, DXWait::Limit, [this] { return !m_isSleeping; });
        return fail(error, isCancelled ? QStringLiteral("cancelled") : QStringLiteral("overslept"));
    }
    return m_epoch == m_server.m_epoch || fail(error, QStringLiteral("connection lost"));
}

bool ScriptedClient::cancelCurrentQuery(DXError *)
{
    const std::lock_guard lock(m_server.m_mutex);
    m_isSleeping = false;
    m_server.m_cancelled.notify_all();
    return true;
}
