// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXNotificationCenter.h"

#include "core/DXObserverList.h"

#include <QHash>

#include <mutex>
#include <utility>

struct DXNotificationCenter::Observers
{
    using List = DXObserverList<const Notification &>;

    // A list stays once it is there: names are few and fixed.
    std::shared_ptr<List> named(const QString &name)
    {
        const std::lock_guard lock(mutex);
        std::shared_ptr<List> &list = lists[name];
        if (!list)
            list = std::make_shared<List>();
        return list;
    }

    std::mutex mutex;
    QHash<QString, std::shared_ptr<List>> lists;
};

DXNotificationCenter::DXNotificationCenter()
    : d(std::make_unique<Observers>())
{ }

DXNotificationCenter::~DXNotificationCenter() = default;

DXNotificationCenter &DXNotificationCenter::sharedInstance()
{
    static DXNotificationCenter instance;
    return instance;
}

void DXNotificationCenter::post(const QString &name, const void *object,
                                const QVariantMap &userInfo)
{
    d->named(name)->notify({name, object, userInfo});
}

std::shared_ptr<void> DXNotificationCenter::observe(const QString &name, Handler handler)
{
    return d->named(name)->add(std::move(handler));
}
