// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/table/PostgresScriptInsertToTableQueryLoader.h"

#include "client/DatabaseResultSet.h"
#include "driver/PostgresCatalogueReader.h"
#include "driver/PostgresDatabaseClient.h"
#include "scripts/PostgresScriptText.h"

PostgresScriptInsertToTableQueryLoader::PostgresScriptInsertToTableQueryLoader(
    const QStringList &tablePath)
    : m_internalTablePath(tablePath)
{ }

QString PostgresScriptInsertToTableQueryLoader::script(const DabroDBC &details) const
{
    const PostgresCatalogueQuery query = PostgresScriptText::query(
        QStringLiteral("Table_ColumnsForDesigner"),
        {{QLatin1String("{TABLE_SCHEMA}"), m_internalTablePath.value(0)},
         {QLatin1String("{TABLE_NAME}"), m_internalTablePath.value(m_internalTablePath.size() - 1)},
         {QLatin1String("{ESCAPED_TABLE_NAME}"),
          PostgresScriptText::escaped(m_internalTablePath.value(m_internalTablePath.size() - 1))}});
    QStringList columns;
    DXError error;
    PostgresCatalogueReader::read(
        details, query,
        [&](const DatabaseResultSet &row) {
            const QString defaultValue =
                row.stringForColumn(QStringLiteral("column_default")).toText();
            if (!defaultValue.contains(QLatin1String("nextval"), Qt::CaseInsensitive))
                columns += PostgresScriptText::escaped(
                    row.stringForColumn(QStringLiteral("column_name")).toText());
        },
        &error);
    if (error)
        return PostgresScriptText::reportedFailure(
            QLatin1String("columns"), error,
            QStringLiteral("postgres.queryLoader.scriptInsertToTableQuery"), query.text());
    return QStringLiteral("INSERT INTO %1 (%2) VALUES(/* user required */);")
        .arg(PostgresDatabaseClient::escapeTablePaths(m_internalTablePath),
             columns.join(QLatin1String(", ")));
}
