// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/PostgresDataStrutures.h"

#include "client/DatabaseResultSet.h"
#include "driver/PostgresCatalogueReader.h"
#include "driver/PostgresSystemDatabaseQueries.h"

namespace
{

// A table's rows come together; schema and name are compared without regard to case.
bool belongsTo(const PostgresSchemaAndTable &table, const QString &schema, const QString &name)
{
    return table.schemaName.compare(schema, Qt::CaseInsensitive) == 0
           && table.tableName.compare(name, Qt::CaseInsensitive) == 0;
}

} // namespace

QList<PostgresSchemaAndTable> PostgresDataStrutures::loadSchemaAndTable(const DabroDBC &details,
                                                                        DXError *error)
{
    QList<PostgresSchemaAndTable> tables;
    const auto addRow = [&tables](const DatabaseResultSet &row) {
        const QString schema = row.stringForColumn(QStringLiteral("table_schema")).toText();
        const QString name = row.stringForColumn(QStringLiteral("table_name")).toText();
        if (tables.isEmpty() || !belongsTo(tables.constLast(), schema, name))
            tables += {.schemaName = schema, .tableName = name, .columns = {}};
        tables.last().addColumn(
            {.columnName = row.stringForColumn(QStringLiteral("column_name")).toText(),
             .dataType = row.stringForColumn(QStringLiteral("column_type")).toText(),
             .isNullable = row.boolForColumn(QStringLiteral("is_nullable")).value_or(false),
             .isPrimaryKey = row.boolForColumn(QStringLiteral("is_pk")).value_or(false)});
    };
    PostgresCatalogueReader::read(
        details,
        PostgresSystemDatabaseQueries::queryByTitle(QStringLiteral("Postgres_TablesForExport")),
        addRow, error);
    return tables;
}
