// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeEntry.h"

/// The node of a table, or of what is read like one.
class DXSHARED_EXPORT DatabaseTreeEntryTable : public DXDatabaseTreeEntry
{
public:
    ~DatabaseTreeEntryTable() override;

    /// Unquoted, without its schema. Set by whoever makes the node.
    const QString &tableName() const { return m_tableName; }
    void setTableName(const QString &tableName) { m_tableName = tableName; }

private:
    QString m_tableName;
};
