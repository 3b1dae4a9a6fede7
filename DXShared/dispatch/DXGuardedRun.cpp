// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dispatch/DXGuardedRun.h"

#include "core/DXLogHelper.h"

#include <exception>
#include <utility>

namespace
{

void logEscaped(const QString &description)
{
    DXLogHelper::sharedInstance().logError(
        DXError(QStringLiteral("dispatch.escapedException"), 0, description));
}

} // namespace

void DXGuardedRun(DXDispatch::Work work) noexcept
{
    try {
        // What it holds is let go in here as well.
        std::exchange(work, nullptr)();
    } catch (const std::exception &exception) {
        logEscaped(QStringLiteral("An operation was abandoned: %1")
                       .arg(QString::fromLocal8Bit(exception.what())));
    } catch (...) {
        logEscaped(QStringLiteral("An operation was abandoned: unknown exception"));
    }
}
