// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dispatch/DXDispatch.h"
#include "driver/PostgresDatabaseClient.h"
#include "driver/PostgresDatabaseResultSet.h"
#include "driver/connecting/PostgresConnectionHandle.h"

#include <QScopeGuard>

#include <algorithm>
#include <vector>

// A text that goes through the extended query protocol holds one statement, or the server refuses
// it; a pipeline brings what stands around it in the same round trip (libpq, "Pipeline Mode").

namespace
{

using Statements = std::vector<const char *>;

// The query runs only after all that stands before it; what stands after it runs in any case: where
// something fails, the server skips the rest up to the synchronisation point, and it is sent again.
// (A point of its own for it took a busy server three times as long.) Rolling back also undoes what
// even a reading statement may leave behind, as set_config() does.
struct Enclosure
{
    Statements before;
    Statements after;
};

Enclosure transactionOfItsOwn(PostgresDatabaseClient::ReadOnly readOnly)
{
    const bool isReadOnly = readOnly == PostgresDatabaseClient::ReadOnly::Yes;
    return {{isReadOnly ? "BEGIN READ ONLY" : "BEGIN"}, {"ROLLBACK"}};
}

Enclosure subtransaction(PostgresDatabaseClient::ReadOnly readOnly)
{
    Enclosure enclosure{
        {"SAVEPOINT dabro_single_statement"},
        {"ROLLBACK TO SAVEPOINT dabro_single_statement", "RELEASE dabro_single_statement"}};
    if (readOnly == PostgresDatabaseClient::ReadOnly::Yes)
        enclosure.before.push_back("SET TRANSACTION READ ONLY");
    return enclosure;
}

bool send(PGconn *connection, const Statements &statements)
{
    const auto sendOne = [connection](const char *statement) {
        return PQsendQueryParams(connection, statement, 0, nullptr, nullptr, nullptr, nullptr, 0)
               != 0;
    };
    return std::all_of(statements.begin(), statements.end(), sendOne)
           && PQpipelineSync(connection) != 0;
}

bool send(PGconn *connection, const Enclosure &enclosure, const QByteArray &query)
{
    Statements all = enclosure.before;
    all.push_back(query.constData());
    all.insert(all.end(), enclosure.after.begin(), enclosure.after.end());
    return send(connection, all);
}

// Reads the results of one statement that has no rows.
void finishStatement(PGconn *connection, DXError *error)
{
    while (const PGresultPointer result{PQgetResult(connection)}) {
        const QString message = QString::fromUtf8(PQresultErrorMessage(result.get()));
        if (error->isEmpty() && !message.isEmpty())
            *error = {QStringLiteral(""), 0, message};
    }
}

// Reads whatever the server still says; only two nulls on end are the end.
void readToEnd(PGconn *connection)
{
    for (int nulls = 0; nulls < 2;)
        nulls = PGresultPointer(PQgetResult(connection)) ? 0 : nulls + 1;
}

// Skipped is what has to run still.
bool leavePipelineMode(PGconn *connection, const Statements &skipped)
{
    readToEnd(connection);
    if (!skipped.empty() && send(connection, skipped))
        readToEnd(connection);
    return PQexitPipelineMode(connection) != 0;
}

} // namespace

void PostgresDatabaseClient::executeSingleStatement(const QString &query, ReadOnly readOnly,
                                                    const RowBlock &block, DXError *error)
{
    DX_ASSERT_BACKGROUND();
    if (const DXError refusal = refusalOf(query)) {
        DXError::report(error, refusal);
        return;
    }
    const auto handle = m_internalConnection ? m_internalConnection
                                             : std::make_shared<PostgresConnectionHandle>(nullptr);
    const Enclosure enclosure =
        isInTransaction() ? subtransaction(readOnly) : transactionOfItsOwn(readOnly);
    if (PQenterPipelineMode(handle->get()) == 0) {
        DXError::report(error, handle->error());
        return;
    }
    DXError failure;
    {
        bool isSent = false;
        const auto leaving = qScopeGuard([&] {
            const Statements skipped = failure ? enclosure.after : Statements();
            if (!isSent || !leavePipelineMode(handle->get(), skipped))
                disconnect();
        });
        m_lastQueryExecuted = query;
        isSent = send(handle->get(), enclosure, query.toUtf8());
        if (!isSent)
            failure = handle->error();
        else
            readSingleStatement(enclosure.before.size(), block, &failure);
    }
    if (failure)
        DXError::report(error, failure);
}

void PostgresDatabaseClient::readSingleStatement(std::size_t statementsBefore,
                                                 const RowBlock &block, DXError *error)
{
    PGconn *const connection = m_internalConnection->get();
    for (std::size_t statement = 0; statement < statementsBefore; ++statement)
        finishStatement(connection, error);
    PQsetSingleRowMode(connection);
    PostgresDatabaseResultSet rows(m_internalConnection, error);
    while (rows.next(error))
        block(rows);
}
