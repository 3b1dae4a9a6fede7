// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresColumn.h"

#include <QList>

/// A table with its columns.
struct PostgresSchemaAndTable
{
    QString schemaName;
    QString tableName;
    /// In the order of the query that they were read with.
    QList<PostgresColumn> columns;

    void addColumn(const PostgresColumn &column) { columns += column; }
    /// Schema and table with a dot between, not quoted.
    QString description() const { return schemaName + u'.' + tableName; }
};
