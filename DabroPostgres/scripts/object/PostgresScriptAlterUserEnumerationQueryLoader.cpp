// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/object/PostgresScriptAlterUserEnumerationQueryLoader.h"

#include "client/DatabaseResultSet.h"
#include "driver/PostgresCatalogueReader.h"
#include "scripts/PostgresScriptText.h"

#include <QStringList>

PostgresScriptAlterUserEnumerationQueryLoader::PostgresScriptAlterUserEnumerationQueryLoader(
    const Init &init)
    : m_typeName(init.typeName)
    , m_schema(init.schema)
{ }

QString PostgresScriptAlterUserEnumerationQueryLoader::script(const DabroDBC &details) const
{
    const PostgresCatalogueQuery query = PostgresScriptText::query(
        QStringLiteral("Postgres_ListDetailsForEnumType"),
        {{QLatin1String("{TYPE_SCHEMA}"), m_schema}, {QLatin1String("{TYPE_NAME}"), m_typeName}});
    QStringList lines;
    PostgresCatalogueReader::read(
        details, query,
        [&](const DatabaseResultSet &row) {
            lines += QStringLiteral("\t'%1'").arg(row.stringForColumnIndex(0).toText());
        },
        nullptr);
    return QStringLiteral("CREATE TYPE %1 AS ENUM\r\n(\r\n%2\r\n);")
        .arg(PostgresScriptText::escapedPath(m_schema, m_typeName),
             lines.join(QLatin1String(",\r\n")));
}
