// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/SQLRecentConnectionList.h"
#include "core/DXGlobal.h"

#include <QStandardItemModel>

/// The saved connections of one or several lists as groups and entries. A group is what stands
/// before the last "/" in an alias; what has none stands above the groups. Entries keep the order
/// of their lists, newest first; groups are sorted by name. [main]
class DXSHARED_EXPORT DXSavedConnectionsModel final : public QStandardItemModel
{
    Q_OBJECT

public:
    using Record = SQLRecentConnectionList::Record;
    enum Role {
        /// The second line: server and database.
        SecondaryRole = Qt::UserRole + 1,
        /// "#RRGGBB", or nothing for no colour.
        ColorRole,
        IdRole,
        IsGroupRole
    };

    using QStandardItemModel::QStandardItemModel;

    /// Shows the records in which every word of filter is found: in alias, server, database or
    /// user, whatever the letter case.
    void show(const QList<Record> &records, const QString &filter);
    /// Null for a group.
    Record recordAt(const QModelIndex &index) const;
    /// The entry whose id this is; invalid when it is not shown.
    QModelIndex indexOfId(const QString &connectionId) const;
    /// The first entry from the top, groups entered; invalid when there is none.
    QModelIndex firstEntry() const;

    /// The alias without its group; what a record without an alias is called instead.
    static QString nameOf(const SQLRecentConnection &record);
    /// Null for none.
    static QString groupOf(const SQLRecentConnection &record);
    static QString secondaryTextOf(const SQLRecentConnection &record);

private:
    QHash<QString, Record> m_records;
};
