// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QEvent>

#include <chrono>
#include <functional>
#include <utility>

/// Tells when what was painted is on the screen: once the event has been handled that made widgets
/// paint, with the flush of the window that follows them. [main]
class PaintedApplication final : public QApplication
{
public:
    using Clock = std::chrono::steady_clock;

    using QApplication::QApplication;

    /// From now on calls then whenever a widget was painted for which isWanted holds.
    void watch(std::function<bool(QObject &)> isWanted, std::function<void()> then)
    {
        m_isWanted = std::move(isWanted);
        m_then = std::move(then);
    }
    void stopWatching() { m_isWanted = {}; }

    bool notify(QObject *receiver, QEvent *event) override
    {
        const bool paints = event->type() == QEvent::Paint;
        ++m_depth;
        const bool result = QApplication::notify(receiver, event);
        --m_depth;
        if (paints && m_isWanted && m_isWanted(*receiver))
            m_hasPainted = true;
        if (m_depth == 0 && std::exchange(m_hasPainted, false) && m_isWanted)
            m_then();
        return result;
    }

private:
    std::function<bool(QObject &)> m_isWanted;
    std::function<void()> m_then;
    int m_depth = 0;
    bool m_hasPainted = false;
};
