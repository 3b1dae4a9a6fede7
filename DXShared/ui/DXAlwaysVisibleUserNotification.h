// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QString>

class QDBusConnection;

/// A short message to the user through the desktop's notifications, which shows whether or not a
/// window of ours is in front. Where no desktop takes it, the program is told instead.
struct DXSHARED_EXPORT DXAlwaysVisibleUserNotification
{
    QString title;
    QString text;

    /// Sends the message and returns at once. When no service takes it, or not within seconds, a
    /// notification undeliveredNotificationName() is posted on the main thread, for a window to
    /// show it. [any]
    void deliver() const;
    /// Its user info holds title and text under these keys.
    static QString undeliveredNotificationName();
    static QString titleKey() { return QStringLiteral("title"); }
    static QString textKey() { return QStringLiteral("text"); }

    /// Hands the message to the notification service of bus: false when there is none. Waits for
    /// the answer. [background]
    bool send(const QDBusConnection &bus) const;
};
