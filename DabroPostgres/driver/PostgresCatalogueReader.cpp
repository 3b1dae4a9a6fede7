// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresCatalogueReader.h"

#include "client/DabroDatabaseConnectionPool.h"
#include "driver/PostgresDatabaseClient.h"

void PostgresCatalogueReader::read(const DabroDBC &details, const QString &query,
                                   const RowBlock &block, DXError *error)
{
    DabroDatabaseConnectionPool::executeQuery(
        [&](DabroDatabaseClient &client, DXError *slot) { read(client, query, block, slot); },
        details, error);
}

void PostgresCatalogueReader::read(DabroDatabaseClient &client, const QString &query,
                                   const RowBlock &block, DXError *error, Access access)
{
    const auto readOnly = access == Access::ReadOnly ? PostgresDatabaseClient::ReadOnly::Yes
                                                     : PostgresDatabaseClient::ReadOnly::No;
    static_cast<PostgresDatabaseClient &>(client).executeSingleStatement(query, readOnly, block,
                                                                         error);
}
