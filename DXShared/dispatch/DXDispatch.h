// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <chrono>
#include <functional>

/// The two doors through which work changes threads. Nothing else in the program starts a thread
/// but a query tab's reader and the tunnel.
namespace DXDispatch
{

using Work = std::function<void()>;

/// Runs work on the process-wide concurrent queue of default priority, soon and at the same time as
/// other work; wide enough for work that blocks on a server. After shutdown() it is refused (false)
/// and work is destroyed unrun. An exception that escapes work is logged as an error. [any]
DXSHARED_EXPORT bool background(Work work);

/// Runs work as background() does, once delay has passed. It waits in the main thread's event loop,
/// so it costs no thread, holds up no exit, and is dropped with the loop. Refused (false) as by
/// main(). [any]
DXSHARED_EXPORT bool backgroundAfter(std::chrono::milliseconds delay, Work work);

/// Runs work with every index from 0 to count - 1, on this thread and, as far as any are free, at
/// the same time on threads of the background queue; returns when all have ended. This thread takes
/// its share, so it never waits for others' work. work does not throw. [any]
DXSHARED_EXPORT void apply(qsizetype count, const std::function<void(qsizetype index)> &work);

/// Queues work for the main thread, which runs it from its event loop, in the order queued. Refused
/// (false), with work destroyed unrun, after shutdown() and while there is no QCoreApplication,
/// whose event loop alone would run it. An exception that escapes work is logged as an error. [any]
DXSHARED_EXPORT bool main(Work work);

/// True on the thread of the QCoreApplication, or, when there is none, on the first thread that
/// asked. [any]
DXSHARED_EXPORT bool isMainThread();

/// Ends background work for good: refuses what is new, drops what has not started, and waits for
/// what runs. Called once, by main(), after whoever runs statements has been told to cancel. [main]
DXSHARED_EXPORT void shutdown();

} // namespace DXDispatch

/// First lines of operations that belong to one thread: they stop a program built with assertions.
#define DX_ASSERT_MAIN() Q_ASSERT_X(DXDispatch::isMainThread(), Q_FUNC_INFO, "main thread only")
#define DX_ASSERT_BACKGROUND()                                                                     \
    Q_ASSERT_X(!DXDispatch::isMainThread(), Q_FUNC_INFO, "never on the main thread")
