// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXNotificationCenter.h"

#include <QMetaType>

class DabroDBC;

/// What is announced when the program made or dropped a table, so that open trees follow. A value.
/// [any]
struct DXSHARED_EXPORT DXDatabaseNotificationTable
{
    /// A connection to the table's database.
    std::shared_ptr<const DabroDBC> dbDetails;
    QString tableName;
    QString tableSchema;

    static QString TableAddedNotificationName();
    static QString TableRemovedNotificationName();

    /// Posts this under one of the names; observers have been called when it returns.
    void post(const QString &name) const;
    /// What a notification of these names carries; without details when it carries nothing.
    static DXDatabaseNotificationTable from(const DXNotificationCenter::Notification &notification);
};

Q_DECLARE_METATYPE(DXDatabaseNotificationTable)
