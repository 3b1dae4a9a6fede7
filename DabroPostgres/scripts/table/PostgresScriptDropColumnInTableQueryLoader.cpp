// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/table/PostgresScriptDropColumnInTableQueryLoader.h"

#include "scripts/PostgresScriptText.h"

PostgresScriptDropColumnInTableQueryLoader::PostgresScriptDropColumnInTableQueryLoader(
    const Init &init)
    : m_targetColumnName(init.columnName)
    , m_targetTableName(init.table)
    , m_targetSchema(init.schema)
{ }

QString PostgresScriptDropColumnInTableQueryLoader::script(const DabroDBC &) const
{
    return QStringLiteral("ALTER TABLE %1 DROP COLUMN %2")
        .arg(PostgresScriptText::escapedPath(m_targetSchema, m_targetTableName),
             PostgresScriptText::escaped(m_targetColumnName));
}
