// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXValue.h"
#include "scripts/PostgresScriptQueryLoader.h"

#include <QList>
#include <QStringList>

/// Deletes rows of a table, found by the values of their columns. Values compare with "=", so that
/// a row with a null in one of its columns stays.
class PostgresScriptDeleteDataFromTableQueryLoader final : public PostgresScriptQueryLoader
{
public:
    /// Each row of data holds a value for every column, in the order of the columns.
    PostgresScriptDeleteDataFromTableQueryLoader(const QString &tableName,
                                                 const QStringList &usingColumns,
                                                 const QList<QList<DXValue>> &data);

protected:
    QString script(const DabroDBC &details) const override;

private:
    const QString m_tableName;
    const QStringList m_columns;
    const QList<QList<DXValue>> m_data;
};
