// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QList>
#include <QString>
#include <QTime>

#include <mutex>

/// What a server said beside its answers, and when it came.
struct DXNotice
{
    QTime time;
    QString text;
};

/// Notices on their way from the thread that runs a query to the one that shows them. A server
/// sends them faster than anybody can read: many go at once, and the oldest make room. [any]
class DXSHARED_EXPORT DXNoticeQueue final
{
public:
    /// How many wait at most.
    static constexpr qsizetype capacity = 10000;

    struct Notices
    {
        QList<DXNotice> notices;
        /// How many came before them, and had to make room.
        qint64 leftOut = 0;
    };

    DXNoticeQueue() = default;

    /// Adds a notice that came now. True when none was waiting: then somebody should come for them.
    bool add(const QString &text);
    /// Those that came since the last call, in order.
    Notices take();

private:
    Q_DISABLE_COPY_MOVE(DXNoticeQueue)

    std::mutex m_mutex;
    Notices m_waiting;
};
