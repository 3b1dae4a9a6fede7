// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

/// Drops a column of a table.
class PostgresScriptDropColumnInTableQueryLoader final : public PostgresScriptQueryLoader
{
public:
    struct Init
    {
        QString columnName;
        QString table;
        QString schema;
    };
    explicit PostgresScriptDropColumnInTableQueryLoader(const Init &init);

protected:
    QString script(const DabroDBC &details) const override;

private:
    const QString m_targetColumnName;
    const QString m_targetTableName;
    const QString m_targetSchema;
};
