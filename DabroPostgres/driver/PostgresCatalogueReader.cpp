// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresCatalogueReader.h"

#include "client/DabroDatabaseConnectionPool.h"
#include "client/DatabaseResultSet.h"
#include "driver/PostgresDatabaseClient.h"

void PostgresCatalogueReader::read(const DabroDBC &details, const PostgresCatalogueQuery &query,
                                   const RowBlock &block, DXError *error)
{
    DabroDatabaseConnectionPool::executeQuery(
        [&](DabroDatabaseClient &client, DXError *slot) { read(client, query, block, slot); },
        details, error);
}

void PostgresCatalogueReader::read(DabroDatabaseClient &client, const PostgresCatalogueQuery &query,
                                   const RowBlock &block, DXError *error, Access access)
{
    if (query.isPlain() && access == Access::ReadOnly && !client.isInTransaction()) {
        readPlain(client, query.text(), block, error);
        return;
    }
    const auto readOnly = access == Access::ReadOnly ? PostgresDatabaseClient::ReadOnly::Yes
                                                     : PostgresDatabaseClient::ReadOnly::No;
    static_cast<PostgresDatabaseClient &>(client).executeSingleStatement(query.text(), readOnly,
                                                                         block, error);
}

void PostgresCatalogueReader::readPlain(DabroDatabaseClient &client, const QString &query,
                                        const RowBlock &block, DXError *error)
{
    DXError failure;
    const auto rows = client.executeQuery(query, &failure);
    if (!rows && !failure)
        failure = DXError(QStringLiteral(""), 0,
                          QStringLiteral("The connection is closed; connect again."));
    while (rows && rows->next(&failure))
        block(*rows);
    if (failure)
        DXError::report(error, failure);
}
