// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresDefaultSchemaHelper.h"

#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "client/DatabaseResultSet.h"
#include "core/DXLogHelper.h"
#include "driver/PostgresSystemDatabaseQueries.h"

namespace
{

QString readLastSchema(DabroDatabaseClient &client, const QString &query, DXError *error)
{
    DXLog(QStringLiteral("PostgresDefaultSchemaHelper is loading the default schema."));
    QString schema;
    const auto resultSet = client.executeQuery(query, error);
    while (resultSet && resultSet->next(error)) {
        schema = resultSet->stringForColumnIndex(0).toText();
        DXLog(QStringLiteral("PostgresDefaultSchemaHelper found a row. Object 1 is: %1")
                  .arg(schema.isNull() ? QStringLiteral("(null)") : schema));
    }
    return schema;
}

QString loadSchema(const DabroDBC &connectionDetails)
{
    const QString query = PostgresSystemDatabaseQueries::queryByTitle(
        QStringLiteral("General_FindDefaultUserSchema"));
    QString schema;
    DXError error;
    DabroDatabaseConnectionPool::executeQuery(
        [&](DabroDatabaseClient &client, DXError *slot) {
            schema = readLastSchema(client, query, slot);
        },
        connectionDetails, &error);

    DXLogHelper &log = DXLogHelper::sharedInstance();
    if (error)
        log.logError(error.withDomain(QStringLiteral("postgres.schemaForDBC")),
                     {{QStringLiteral("Query"), query}});
    if (!schema.isEmpty())
        return schema;
    DXLog(QStringLiteral("ERROR: Failed to find the default schema for user. Assuming public."));
    log.logError(error.withDomain(QStringLiteral("postgres.schemaForDBC.nilResult")));
    return QStringLiteral("public");
}

} // namespace

PostgresDefaultSchemaHelper::PostgresDefaultSchemaHelper()
    : m_defaultSchemaSemaphore(1, DXProductName(u"postgres.defaultSchemaSeamphore"))
{ }

PostgresDefaultSchemaHelper &PostgresDefaultSchemaHelper::sharedInstance()
{
    static PostgresDefaultSchemaHelper instance;
    return instance;
}

QString PostgresDefaultSchemaHelper::schemaForDBC(const DabroDBC &connectionDetails)
{
    const QString key = connectionDetails.description();
    DXLog(QStringLiteral("PostgresDefaultSchemaHelper finding schema for %1").arg(key));
    m_defaultSchemaSemaphore.wait();
    const DXSemaphoreReleaser releaser(m_defaultSchemaSemaphore);
    if (const auto cached = m_lookup.constFind(key); cached != m_lookup.constEnd()) {
        DXLog(QStringLiteral("PostgresDefaultSchemaHelper schema was cached for %1 (%2)")
                  .arg(key, *cached));
        return *cached;
    }
    const QString schema = loadSchema(connectionDetails);
    m_lookup.insert(key, schema);
    DXLog(QStringLiteral("PostgresDefaultSchemaHelper schema was found for %1 (%2)")
              .arg(key, schema));
    return schema;
}
