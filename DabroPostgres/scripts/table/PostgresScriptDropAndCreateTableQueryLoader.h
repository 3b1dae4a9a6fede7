// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

/// Drops a table and creates it anew, without its rows.
class PostgresScriptDropAndCreateTableQueryLoader final : public PostgresScriptQueryLoader
{
public:
    struct Init
    {
        QString tableName;
        QString schema;
    };
    explicit PostgresScriptDropAndCreateTableQueryLoader(const Init &init);

protected:
    QString script(const DabroDBC &details) const override;

private:
    const QString m_internalTableName;
    const QString m_internalSchemaName;
};
