// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dispatch/DXDispatch.h"

#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <future>
#include <memory>
#include <type_traits>
#include <utility>

/// Runs work in the background and, meanwhile, the main event loop; returns what work returns. For
/// operations that must not be called on the main thread. Work that takes longer than limit ends
/// the program, since it may use what the test is about to destroy. [main]
template<typename Work>
auto inBackground(Work work, std::chrono::seconds limit = std::chrono::minutes(1))
    -> std::invoke_result_t<Work &>
{
    const auto task =
        std::make_shared<std::packaged_task<std::invoke_result_t<Work &>()>>(std::move(work));
    auto result = task->get_future();
    QEventLoop loop;
    const bool isStarted = DXDispatch::background([task, &loop] {
        (*task)();
        DXDispatch::main([&loop] { loop.quit(); });
    });
    if (!isStarted)
        qFatal("Background work was refused");
    QTimer::singleShot(limit, &loop, [limit] {
        qFatal("Background work did not end within %lld seconds",
               static_cast<long long>(limit.count()));
    });
    loop.exec();
    return result.get();
}
