// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/table/PostgresScriptCreateTableQueryLoader.h"

#include "client/DabroDatabaseConnectionPool.h"
#include "client/DatabaseResultSet.h"
#include "driver/PostgresCatalogueReader.h"
#include "scripts/PostgresScriptText.h"

#include <QMap>
#include <QStringList>

namespace
{

struct Definition
{
    QStringList lines;
    // Names of the primary key's columns by their position in it.
    QMap<qint64, QString> key;

    void addColumn(const DatabaseResultSet &row);
    QString statement(const QString &path) const;
};

void Definition::addColumn(const DatabaseResultSet &row)
{
    const QString name =
        PostgresScriptText::escaped(row.stringForColumn(QStringLiteral("column_name")).toText());
    const auto position = row.numberForColumn(QStringLiteral("is_pk"));
    if (position && position->toInteger() != 0)
        key.insert(position->toInteger(), name);
    QString line = QStringLiteral("\t%1 %2").arg(
        name, row.stringForColumn(QStringLiteral("column_type")).toText());
    const DXValue defaultValue = row.stringForColumn(QStringLiteral("default_value"));
    if (!defaultValue.isNull())
        line += QLatin1String(" DEFAULT ") + defaultValue.toText();
    if (!row.boolForColumn(QStringLiteral("is_nullable")).value_or(false))
        line += QLatin1String(" NOT NULL");
    lines += line;
}

QString Definition::statement(const QString &path) const
{
    QString script = QStringLiteral("BEGIN;\r\n\r\nCREATE TABLE IF NOT EXISTS %1 (\r\n%2")
                         .arg(path, lines.join(QLatin1String(",\r\n")));
    if (!key.isEmpty())
        script += QStringLiteral(",\r\n\tPRIMARY KEY(%1)").arg(key.values().join(u','));
    if (!script.endsWith(PostgresScriptText::lineBreak()))
        script += PostgresScriptText::lineBreak();
    return script + QLatin1String(");\r\n\r\nCOMMIT;");
}

} // namespace

PostgresScriptCreateTableQueryLoader::PostgresScriptCreateTableQueryLoader(const Init &init)
    : m_internalTableName(init.tableName)
    , m_internalSchemaName(init.schema)
{ }

QString PostgresScriptCreateTableQueryLoader::creationQueryForTable(const QString &table,
                                                                    const QString &inSchema,
                                                                    const DabroDBC &dbConnection)
{
    const PostgresCatalogueQuery query = PostgresScriptText::query(
        QStringLiteral("Table_AlterQuery"),
        {{QLatin1String("{TABLE_NAME}"), table},
         {QLatin1String("{TABLE_SCHEMA}"), inSchema},
         {QLatin1String("{ESCAPED_TABLE_NAME}"), PostgresScriptText::escaped(table)}});
    Definition definition;
    DXError error;
    DabroDatabaseConnectionPool::executeQuery(
        [&](DabroDatabaseClient &client, DXError *slot) {
            definition = {};
            PostgresCatalogueReader::read(
                client, query, [&](const DatabaseResultSet &row) { definition.addColumn(row); },
                slot);
        },
        dbConnection, &error, {.retryOnError = DabroDatabaseConnectionPool::RetryOnError::Yes});
    if (error)
        return PostgresScriptText::reportedFailure(
            QLatin1String("table definition"), error,
            QStringLiteral("postgres.queryLoader.createTableQuery"), query.text());
    return definition.statement(PostgresScriptText::escapedPath(inSchema, table));
}

QString PostgresScriptCreateTableQueryLoader::script(const DabroDBC &details) const
{
    return creationQueryForTable(m_internalTableName, m_internalSchemaName, details);
}
