// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXNoticeQueue.h"

#include <utility>

bool DXNoticeQueue::add(const QString &text)
{
    const std::lock_guard lock(m_mutex);
    const bool isFirst = m_waiting.notices.isEmpty();
    // Taking the first from a list moves none of the others.
    if (m_waiting.notices.size() == capacity) {
        m_waiting.notices.removeFirst();
        ++m_waiting.leftOut;
    }
    m_waiting.notices.append({QTime::currentTime(), text});
    return isFirst;
}

DXNoticeQueue::Notices DXNoticeQueue::take()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_waiting, {});
}
