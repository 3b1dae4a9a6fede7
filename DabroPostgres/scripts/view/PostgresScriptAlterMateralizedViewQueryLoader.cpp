// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/view/PostgresScriptAlterMateralizedViewQueryLoader.h"

#include "scripts/PostgresScriptText.h"

PostgresScriptAlterMateralizedViewQueryLoader::PostgresScriptAlterMateralizedViewQueryLoader(
    const Init &init)
    : m_view(init.view)
    , m_schema(init.schema)
{ }

QString PostgresScriptAlterMateralizedViewQueryLoader::script(const DabroDBC &details) const
{
    const PostgresCatalogueQuery query = PostgresScriptText::query(
        QStringLiteral("View_AlterMateralizedQuery"), {{QLatin1String("{VIEW_NAME}"), m_view}});
    return QStringLiteral("-- The structure of a materialized view cannot directly be modified, so "
                          "we must first drop the existing view/\r\n"
                          "DROP MATERIALIZED VIEW %1;\r\n\r\n"
                          "-- Then create a new one.\r\n"
                          "CREATE MATERIALIZED VIEW %2.%1 AS\r\n"
                          "%2.%3")
        .arg(PostgresScriptText::escaped(m_schema), PostgresScriptText::escaped(m_view),
             PostgresScriptText::definition(details, query, m_schema));
}
