// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresConnectionHelper.h"

#include "client/DabroDBC.h"
#include "core/DXNotificationCenter.h"

#include <mutex>

PostgresConnectionHelper &PostgresConnectionHelper::sharedInstance()
{
    static PostgresConnectionHelper instance;
    return instance;
}

QString PostgresConnectionHelper::notificationName()
{
    return DXProductName(u"connectionsettingschanged");
}

QString PostgresConnectionHelper::idForDBC(const DabroDBC &connectionDetails)
{
    const QString connectionId = connectionDetails.connectionId();
    return connectionId.isEmpty() ? connectionDetails.description() : connectionId;
}

bool PostgresConnectionHelper::groupBySchemaForDBC(const DabroDBC &connectionDetails) const
{
    return groupBySchemaForId(idForDBC(connectionDetails));
}

bool PostgresConnectionHelper::groupBySchemaForId(const QString &connectionId) const
{
    const std::shared_lock lock(m_groupBySchemaReadWriteLock);
    return m_groupBySchemaDictionary.value(connectionId, true);
}

void PostgresConnectionHelper::setGroupBySchemaForDBC(bool groupBySchema,
                                                      const DabroDBC &connectionDetails)
{
    setGroupBySchemaForId(groupBySchema, idForDBC(connectionDetails));
}

void PostgresConnectionHelper::setGroupBySchemaForId(bool groupBySchema,
                                                     const QString &connectionId)
{
    if (groupBySchemaForId(connectionId) == groupBySchema)
        return;
    {
        const std::unique_lock lock(m_groupBySchemaReadWriteLock);
        // Another writer may have come first: one change is announced once.
        if (m_groupBySchemaDictionary.value(connectionId, true) == groupBySchema)
            return;
        m_groupBySchemaDictionary.insert(connectionId, groupBySchema);
    }
    DXNotificationCenter::sharedInstance().post(notificationName(), this);
}
