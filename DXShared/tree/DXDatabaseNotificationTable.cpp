// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/DXDatabaseNotificationTable.h"

namespace
{
constexpr QLatin1String tableKey("table");
}

QString DXDatabaseNotificationTable::TableAddedNotificationName()
{
    return DXProductName(u"tableadded");
}

QString DXDatabaseNotificationTable::TableRemovedNotificationName()
{
    return DXProductName(u"tableremoved");
}

void DXDatabaseNotificationTable::post(const QString &name) const
{
    DXNotificationCenter::sharedInstance().post(name, this,
                                                {{tableKey, QVariant::fromValue(*this)}});
}

DXDatabaseNotificationTable
DXDatabaseNotificationTable::from(const DXNotificationCenter::Notification &notification)
{
    return notification.userInfo.value(tableKey).value<DXDatabaseNotificationTable>();
}
