// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

/// Drops a table.
class PostgresScriptDropTableQueryLoader final : public PostgresScriptQueryLoader
{
public:
    struct Init
    {
        QString tableName;
        QString schema;
    };
    explicit PostgresScriptDropTableQueryLoader(const Init &init);

    /// The script itself. The selector is `dropQueryForTable:inSchema:dbConnection:`. [any]
    static QString dropQueryForTable(const QString &table, const QString &inSchema,
                                     const DabroDBC &dbConnection);

protected:
    QString script(const DabroDBC &details) const override;

private:
    const QString m_internalTableName;
    const QString m_internalSchemaName;
};
