// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>

#include <shared_mutex>

class DabroDBC;

/// Whether the catalogue tree lists the objects of all schemas together, as one group, or has a
/// node for each schema; for each connection, for as long as the program runs. [any]
class PostgresConnectionHelper final
{
public:
    static PostgresConnectionHelper &sharedInstance();

    /// What is posted, with this helper as its object, on the thread that changed a choice.
    static QString notificationName();

    /// The saved connection's id, or its description when it was never saved.
    static QString idForDBC(const DabroDBC &connectionDetails);

    /// True until somebody chose otherwise. The selectors are `groupBySchemaForDBC:` and
    /// `groupBySchemaForId:`.
    bool groupBySchemaForDBC(const DabroDBC &connectionDetails) const;
    bool groupBySchemaForId(const QString &connectionId) const;
    /// Announces the choice if it is another one than before. The selectors are
    /// `setGroupBySchema:forDBC:` and `setGroupBySchema:forId:`.
    void setGroupBySchemaForDBC(bool groupBySchema, const DabroDBC &connectionDetails);
    void setGroupBySchemaForId(bool groupBySchema, const QString &connectionId);

private:
    PostgresConnectionHelper() = default;
    Q_DISABLE_COPY_MOVE(PostgresConnectionHelper)

    mutable std::shared_mutex m_groupBySchemaReadWriteLock;
    QHash<QString, bool> m_groupBySchemaDictionary;
};
