// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/object/PostgresScriptAlterFunctionQueryLoader.h"

#include "scripts/PostgresScriptText.h"

PostgresScriptAlterFunctionQueryLoader::PostgresScriptAlterFunctionQueryLoader(const Init &init)
    : m_function(init.function)
    , m_overload(init.overload)
{ }

QString PostgresScriptAlterFunctionQueryLoader::script(const DabroDBC &details) const
{
    return PostgresScriptText::definition(
        details, PostgresScriptText::query(QStringLiteral("Function_AlterQuery"),
                                           {{QLatin1String("{FUNCTION_NAME}"), m_function},
                                            {QLatin1String("{FUNCTION_OVERLOAD}"), m_overload}}));
}
