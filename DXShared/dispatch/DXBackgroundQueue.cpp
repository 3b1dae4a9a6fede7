// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dispatch/DXBackgroundQueue.h"

#include "core/DXLogHelper.h"
#include "dispatch/DXGuardedRun.h"

#include <system_error>
#include <utility>

DXBackgroundQueue::DXBackgroundQueue(const Limits &limits)
    : m_limits(limits)
{
    // Made first, so that a static queue is destroyed before the log that its work writes to.
    DXLogHelper::sharedInstance();
}

DXBackgroundQueue::~DXBackgroundQueue()
{
    shutdown();
}

bool DXBackgroundQueue::add(DXDispatch::Work work)
{
    Threads left;
    const std::lock_guard lock(m_mutex);
    if (m_refuses)
        return false;
    if (m_idle <= m_queue.size() && m_threads.size() < m_limits.threads && !startThread()
        && m_threads.empty())
        return false;
    m_queue.push_back(std::move(work));
    left.swap(m_left);
    m_wake.notify_one();
    return true;
}

bool DXBackgroundQueue::startThread()
{
    const auto self = m_threads.emplace(m_threads.end());
    try {
        *self = std::jthread([this, self] { serve(self); });
        return true;
    } catch (const std::system_error &) {
        m_threads.erase(self);
        return false;
    }
}

void DXBackgroundQueue::serve(Threads::iterator self)
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        ++m_idle;
        m_wake.wait_for(lock, m_limits.idle, [this] { return m_refuses || !m_queue.empty(); });
        --m_idle;
        if (m_queue.empty())
            break;
        DXDispatch::Work work = std::move(m_queue.front());
        m_queue.pop_front();
        lock.unlock();
        DXGuardedRun(std::move(work));
        lock.lock();
    }
    m_left.splice(m_left.end(), m_threads, self);
    m_threadLeft.notify_all();
}

void DXBackgroundQueue::shutdown()
{
    Threads left;
    std::deque<DXDispatch::Work> dropped;
    {
        const std::lock_guard lock(m_mutex);
        m_refuses = true;
        dropped.swap(m_queue);
        m_wake.notify_all();
    }
    dropped.clear();
    std::unique_lock lock(m_mutex);
    m_threadLeft.wait(lock, [this] { return m_threads.empty(); });
    left.swap(m_left);
}

std::size_t DXBackgroundQueue::threadCount() const
{
    const std::lock_guard lock(m_mutex);
    return m_threads.size();
}
