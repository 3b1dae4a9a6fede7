// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/view/PostgresScriptDropAndCreateViewQueryLoader.h"

#include "scripts/view/PostgresScriptCreateViewQueryLoader.h"
#include "scripts/view/PostgresScriptDropViewQueryLoader.h"

PostgresScriptDropAndCreateViewQueryLoader::PostgresScriptDropAndCreateViewQueryLoader(
    const Init &init)
    : m_view(init.view)
    , m_schema(init.schema)
    , m_isMaterialized(init.isMaterialized)
{ }

QString PostgresScriptDropAndCreateViewQueryLoader::script(const DabroDBC &details) const
{
    return PostgresScriptDropViewQueryLoader::dropQueryForView(m_view, m_schema, m_isMaterialized,
                                                               details)
           + QLatin1String("\r\n\r\n")
           + PostgresScriptCreateViewQueryLoader::createQueryForView(m_view, m_schema,
                                                                     m_isMaterialized, details);
}
