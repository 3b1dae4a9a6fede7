// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QString>
#include <QVariantMap>

#include <functional>
#include <memory>

/// Announcements by name inside the process: whoever posts one does not know who listens. [any]
class DXSHARED_EXPORT DXNotificationCenter final
{
public:
    struct Notification
    {
        QString name;
        /// The object that posted it; only to be compared, it may be gone when read later.
        const void *object = nullptr;
        QVariantMap userInfo;
    };
    /// Called on the thread that posts.
    using Handler = std::function<void(const Notification &notification)>;

    static DXNotificationCenter &sharedInstance();

    /// Calls every observer of name before it returns, on the calling thread. Observers may add and
    /// remove observers and may post.
    void post(const QString &name, const void *object = nullptr, const QVariantMap &userInfo = {});

    /// Calls handler for every notification called name until the returned object is destroyed;
    /// once it is, handler is not running on another thread and never runs again.
    [[nodiscard]] std::shared_ptr<void> observe(const QString &name, Handler handler);

private:
    DXNotificationCenter();
    ~DXNotificationCenter();
    Q_DISABLE_COPY_MOVE(DXNotificationCenter)

    struct Observers;
    std::unique_ptr<Observers> d;
};
