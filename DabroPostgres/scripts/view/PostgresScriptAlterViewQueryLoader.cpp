// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/view/PostgresScriptAlterViewQueryLoader.h"

#include "scripts/PostgresScriptText.h"

PostgresScriptAlterViewQueryLoader::PostgresScriptAlterViewQueryLoader(const QString &view)
    : m_view(view)
{ }

QString PostgresScriptAlterViewQueryLoader::script(const DabroDBC &details) const
{
    const PostgresCatalogueQuery query = PostgresScriptText::query(
        QStringLiteral("View_AlterQuery"), {{QLatin1String("{VIEW_NAME}"), m_view}});
    return QStringLiteral("CREATE OR REPLACE VIEW %1 AS\r\n%2")
        .arg(PostgresScriptText::escaped(m_view), PostgresScriptText::definition(details, query));
}
