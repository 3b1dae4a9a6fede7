// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTest>

#include <chrono>
#include <condition_variable>
#include <mutex>

/// How tests wait: on a condition, and only so long that a loaded machine still meets it.
namespace DXWait
{

inline constexpr std::chrono::seconds Limit(60);

/// Runs the main thread's events until condition holds; false when it never did. Main thread only.
template<typename Condition>
bool until(Condition condition)
{
    return QTest::qWaitFor(condition, static_cast<int>(std::chrono::milliseconds(Limit).count()));
}

/// A door that one thread opens and others wait at. It stays open.
class Gate final
{
public:
    void open()
    {
        const std::lock_guard lock(m_mutex);
        m_isOpen = true;
        m_opened.notify_all();
    }
    /// False when it was not opened within the limit.
    bool wait()
    {
        std::unique_lock lock(m_mutex);
        return m_opened.wait_for(lock, Limit, [this] { return m_isOpen; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_opened;
    bool m_isOpen = false;
};

} // namespace DXWait
