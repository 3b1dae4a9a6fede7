// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/table/PostgresScriptAlterTableQueryLoader.h"

#include "client/DatabaseResultSet.h"
#include "driver/PostgresCatalogueReader.h"
#include "scripts/PostgresScriptText.h"

#include <QStringList>

namespace
{

QString escapedCell(const DatabaseResultSet &row, const QString &column)
{
    return PostgresScriptText::escaped(row.stringForColumn(column).toText());
}

QString columnLine(const DatabaseResultSet &row)
{
    return QStringLiteral("\t%1 %2 %3 %4")
        .arg(escapedCell(row, QStringLiteral("column_name")),
             row.stringForColumn(QStringLiteral("column_type")).toText(),
             row.stringForColumn(QStringLiteral("column_default_value")).toText(),
             row.stringForColumn(QStringLiteral("column_not_null")).toText());
}

} // namespace

PostgresScriptAlterTableQueryLoader::PostgresScriptAlterTableQueryLoader(const Init &init)
    : m_internalTableName(init.tableName)
    , m_internalSchemaName(init.schema)
{ }

QString PostgresScriptAlterTableQueryLoader::script(const DabroDBC &details) const
{
    const PostgresCatalogueQuery query =
        PostgresScriptText::query(QStringLiteral("Table_AlterQuery"),
                                  {{QLatin1String("{TABLE_NAME}"), m_internalTableName},
                                   {QLatin1String("{TABLE_SCHEMA}"), m_internalSchemaName}});
    QString table = PostgresScriptText::escaped(m_internalTableName);
    QString schema = PostgresScriptText::escaped(m_internalSchemaName);
    QStringList lines;
    DXError error;
    PostgresCatalogueReader::read(
        details, query,
        [&](const DatabaseResultSet &row) {
            if (lines.isEmpty()) {
                table = escapedCell(row, QStringLiteral("table_name"));
                schema = escapedCell(row, QStringLiteral("schema_name"));
            }
            lines += columnLine(row);
        },
        &error);
    if (error)
        return PostgresScriptText::reportedFailure(
            QLatin1String("table definition"), error,
            QStringLiteral("postgres.queryLoader.alterTableQuery"), query.text());
    return QStringLiteral("CREATE TABLE %1 (\r\n%2\r\n);")
        .arg(PostgresScriptText::escapedPath(schema, table), lines.join(QLatin1String(",\r\n")));
}
