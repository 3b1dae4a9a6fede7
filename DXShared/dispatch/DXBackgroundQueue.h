// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "dispatch/DXDispatch.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <list>
#include <mutex>
#include <thread>

/// The threads behind DXDispatch::background(). Work starts at once while fewer than the most
/// threads are busy, so that work which blocks does not hold up other work; otherwise it waits its
/// turn, first come, first served. [any]
class DXSHARED_EXPORT DXBackgroundQueue final
{
public:
    struct Limits
    {
        /// The most threads. Beyond what the server and the user's patience allow at once, small
        /// enough that runaway work does not take the machine down.
        std::size_t threads = 64;
        /// How long a thread waits for work before it leaves.
        std::chrono::milliseconds idle = std::chrono::seconds(5);
    };

    DXBackgroundQueue()
        : DXBackgroundQueue(Limits())
    { }
    explicit DXBackgroundQueue(const Limits &limits);
    /// Shuts down. Not on one of its own threads.
    ~DXBackgroundQueue();

    /// Runs work on one of the threads. False, with work destroyed unrun, after shutdown() and when
    /// the system refuses the first thread.
    bool add(DXDispatch::Work work);
    /// Refuses what is new, destroys what has not started, and waits for what runs. Not on one of
    /// its own threads.
    void shutdown();

    /// Threads that run or wait for work.
    std::size_t threadCount() const;

private:
    Q_DISABLE_COPY_MOVE(DXBackgroundQueue)

    using Threads = std::list<std::jthread>;

    bool startThread();
    void serve(Threads::iterator self);

    const Limits m_limits;
    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_threadLeft;
    std::deque<DXDispatch::Work> m_queue;
    Threads m_threads;
    // Threads that have ended or are about to, to be joined by whoever comes next.
    Threads m_left;
    std::size_t m_idle = 0;
    bool m_refuses = false;
};
