// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/view/PostgresScriptDropViewQueryLoader.h"

#include "scripts/PostgresScriptText.h"

PostgresScriptDropViewQueryLoader::PostgresScriptDropViewQueryLoader(const Init &init)
    : m_view(init.view)
    , m_schema(init.schema)
    , m_isMaterialized(init.isMaterialized)
{ }

QString PostgresScriptDropViewQueryLoader::dropQueryForView(const QString &view,
                                                            const QString &inSchema,
                                                            bool isMaterialized,
                                                            const DabroDBC &dbConnection)
{
    Q_UNUSED(dbConnection)
    const QString text = isMaterialized ? QStringLiteral("DROP MATERIALIZED VIEW %1;")
                                        : QStringLiteral("DROP VIEW %1;");
    return text.arg(PostgresScriptText::escapedPath(inSchema, view));
}

QString PostgresScriptDropViewQueryLoader::script(const DabroDBC &details) const
{
    return dropQueryForView(m_view, m_schema, m_isMaterialized, details);
}
