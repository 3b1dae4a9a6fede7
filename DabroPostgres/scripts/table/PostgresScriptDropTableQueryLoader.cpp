// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/table/PostgresScriptDropTableQueryLoader.h"

#include "scripts/PostgresScriptText.h"

PostgresScriptDropTableQueryLoader::PostgresScriptDropTableQueryLoader(const Init &init)
    : PostgresScriptQueryLoader(Delivery::AtOnce)
    , m_internalTableName(init.tableName)
    , m_internalSchemaName(init.schema)
{ }

QString PostgresScriptDropTableQueryLoader::dropQueryForTable(const QString &table,
                                                              const QString &inSchema,
                                                              const DabroDBC &dbConnection)
{
    Q_UNUSED(dbConnection)
    return QStringLiteral("DROP TABLE %1;").arg(PostgresScriptText::escapedPath(inSchema, table));
}

QString PostgresScriptDropTableQueryLoader::script(const DabroDBC &details) const
{
    return dropQueryForTable(m_internalTableName, m_internalSchemaName, details);
}
