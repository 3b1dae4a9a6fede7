// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <chrono>

/// A stopwatch on the monotonic clock, for the timing lines of the log. Not shared between threads.
class MachTimer final
{
public:
    /// Starts, or starts again from zero.
    void startTimer() { m_start = std::chrono::steady_clock::now(); }
    /// Seconds since the last startTimer(), or since it was made.
    double elapsedSeconds() const
    {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};
