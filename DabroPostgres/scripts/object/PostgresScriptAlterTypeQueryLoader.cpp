// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/object/PostgresScriptAlterTypeQueryLoader.h"

#include "client/DatabaseResultSet.h"
#include "driver/PostgresCatalogueReader.h"
#include "scripts/PostgresScriptText.h"

#include <QStringList>

PostgresScriptAlterTypeQueryLoader::PostgresScriptAlterTypeQueryLoader(const Init &init)
    : m_typeName(init.typeName)
    , m_schema(init.schema)
{ }

QString PostgresScriptAlterTypeQueryLoader::script(const DabroDBC &details) const
{
    const PostgresCatalogueQuery query = PostgresScriptText::query(
        QStringLiteral("Postgres_ListDetailsForCustomType"),
        {{QLatin1String("{TYPE_SCHEMA}"), m_schema}, {QLatin1String("{TYPE_NAME}"), m_typeName}});
    QStringList lines;
    PostgresCatalogueReader::read(
        details, query,
        [&](const DatabaseResultSet &row) {
            lines += QStringLiteral("\t%1 %2").arg(
                PostgresScriptText::escaped(row.stringForColumnIndex(0).toText()),
                row.stringForColumnIndex(1).toText());
        },
        nullptr);
    return QStringLiteral("CREATE TYPE %1 AS\r\n(\r\n%2\r\n);")
        .arg(PostgresScriptText::escapedPath(m_schema, m_typeName),
             lines.join(QLatin1String(",\r\n")));
}
