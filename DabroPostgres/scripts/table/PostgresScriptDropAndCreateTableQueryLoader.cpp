// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/table/PostgresScriptDropAndCreateTableQueryLoader.h"

#include "scripts/table/PostgresScriptCreateTableQueryLoader.h"
#include "scripts/table/PostgresScriptDropTableQueryLoader.h"

PostgresScriptDropAndCreateTableQueryLoader::PostgresScriptDropAndCreateTableQueryLoader(
    const Init &init)
    : m_internalTableName(init.tableName)
    , m_internalSchemaName(init.schema)
{ }

QString PostgresScriptDropAndCreateTableQueryLoader::script(const DabroDBC &details) const
{
    return PostgresScriptDropTableQueryLoader::dropQueryForTable(m_internalTableName,
                                                                 m_internalSchemaName, details)
           + QLatin1String("\r\n\r\n")
           + PostgresScriptCreateTableQueryLoader::creationQueryForTable(
               m_internalTableName, m_internalSchemaName, details);
}
