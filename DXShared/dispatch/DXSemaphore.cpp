// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dispatch/DXSemaphore.h"

DXSemaphore::DXSemaphore(int count, const QString &identifier)
    : m_count(count)
    , m_identifier(identifier)
{ }

void DXSemaphore::wait()
{
    std::unique_lock lock(m_mutex);
    m_freed.wait(lock, [this] { return m_count > 0; });
    --m_count;
}

bool DXSemaphore::tryWait()
{
    const std::lock_guard lock(m_mutex);
    if (m_count == 0)
        return false;
    --m_count;
    return true;
}

void DXSemaphore::signal()
{
    {
        const std::lock_guard lock(m_mutex);
        ++m_count;
    }
    m_freed.notify_one();
}
