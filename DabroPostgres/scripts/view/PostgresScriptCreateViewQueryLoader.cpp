// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/view/PostgresScriptCreateViewQueryLoader.h"

#include "scripts/PostgresScriptText.h"

PostgresScriptCreateViewQueryLoader::PostgresScriptCreateViewQueryLoader(const Init &init)
    : m_view(init.view)
    , m_schema(init.schema)
    , m_isMaterialized(init.isMaterialized)
{ }

QString PostgresScriptCreateViewQueryLoader::createQueryForView(const QString &view,
                                                                const QString &inSchema,
                                                                bool isMaterialized,
                                                                const DabroDBC &dbConnection)
{
    return isMaterialized ? queryForMaterializedCreateView(view, inSchema, dbConnection)
                          : queryForCreateView(view, inSchema, dbConnection);
}

QString PostgresScriptCreateViewQueryLoader::queryForCreateView(const QString &view,
                                                                const QString &inSchema,
                                                                const DabroDBC &dbConnectionDetails)
{
    const PostgresCatalogueQuery query = PostgresScriptText::query(
        QStringLiteral("View_AlterQuery"), {{QLatin1String("{VIEW_NAME}"), view}});
    return QStringLiteral("CREATE OR REPLACE VIEW %1 AS\r\n%2")
        .arg(PostgresScriptText::escapedPath(inSchema, view),
             PostgresScriptText::definition(dbConnectionDetails, query, inSchema));
}

QString PostgresScriptCreateViewQueryLoader::queryForMaterializedCreateView(
    const QString &view, const QString &inSchema, const DabroDBC &dbConnectionDetails)
{
    const PostgresCatalogueQuery query = PostgresScriptText::query(
        QStringLiteral("View_AlterMateralizedQuery"), {{QLatin1String("{VIEW_NAME}"), view}});
    return QStringLiteral("CREATE MATERIALIZED VIEW %1 AS\r\n%2")
        .arg(PostgresScriptText::escapedPath(inSchema, view),
             PostgresScriptText::definition(dbConnectionDetails, query, inSchema));
}

QString PostgresScriptCreateViewQueryLoader::script(const DabroDBC &details) const
{
    return createQueryForView(m_view, m_schema, m_isMaterialized, details);
}
