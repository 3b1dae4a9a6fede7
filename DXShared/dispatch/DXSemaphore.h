// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QString>

#include <condition_variable>
#include <mutex>

/// A counting semaphore with a name for diagnostics. [any]
class DXSHARED_EXPORT DXSemaphore final
{
public:
    /// Starts with count units free; identifier names it in a debugger and in the log.
    explicit DXSemaphore(int count, const QString &identifier = {});

    /// Takes a unit, waiting without limit until one is free. Not for the main thread when the
    /// holder may be talking to a server.
    void wait();
    /// Takes a unit if one is free now; never waits. True when it did.
    bool tryWait();
    /// Gives a unit back.
    void signal();

    QString identifier() const { return m_identifier; }

private:
    Q_DISABLE_COPY_MOVE(DXSemaphore)

    std::mutex m_mutex;
    std::condition_variable m_freed;
    int m_count;
    const QString m_identifier;
};

/// Gives a unit back at the end of a scope; made once the unit was taken.
class DXSemaphoreReleaser final
{
public:
    explicit DXSemaphoreReleaser(DXSemaphore &semaphore)
        : m_semaphore(semaphore)
    { }
    ~DXSemaphoreReleaser() { m_semaphore.signal(); }

private:
    Q_DISABLE_COPY_MOVE(DXSemaphoreReleaser)

    DXSemaphore &m_semaphore;
};
