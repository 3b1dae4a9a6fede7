// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/object/PostgresScriptDropFunctionQueryLoader.h"

#include "scripts/PostgresScriptText.h"

PostgresScriptDropFunctionQueryLoader::PostgresScriptDropFunctionQueryLoader(const Init &init)
    : m_targetFunction(init.function)
    , m_targetOverload(init.overload)
    , m_targetSchema(init.schema)
{ }

QString PostgresScriptDropFunctionQueryLoader::script(const DabroDBC &details) const
{
    Q_UNUSED(details)
    return QStringLiteral("DROP FUNCTION %1.%2(%3);")
        .arg(PostgresScriptText::escaped(m_targetSchema), m_targetFunction, m_targetOverload);
}
