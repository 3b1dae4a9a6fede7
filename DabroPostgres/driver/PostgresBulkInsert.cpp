// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresDatabaseClient.h"

#include "core/DXLogHelper.h"
#include "dispatch/DXDispatch.h"
#include "driver/PostgresBulkInsertBuilder.h"
#include "driver/connecting/PostgresConnectionHandle.h"

namespace
{

DXError failure(const QString &description)
{
    return {QStringLiteral(""), 0, description};
}

// True when the server did it; if not, the connection's message tells why.
bool run(const PostgresConnectionHandle &handle, const char *statement)
{
    const PGresultPointer result(PQexec(handle.get(), statement));
    return PQresultStatus(result.get()) == PGRES_COMMAND_OK;
}

bool begin(const PostgresConnectionHandle &handle, DXError *error)
{
    if (run(handle, "BEGIN"))
        return true;
    DXLog(QStringLiteral("BEGIN command failed with error: %1.").arg(handle.errorMessage()));
    DXError::report(error, failure(QStringLiteral("Failed to create import transaction.")));
    return false;
}

bool end(const PostgresConnectionHandle &handle, const char *statement, DXError *error)
{
    if (run(handle, statement))
        return true;
    DXLog(QStringLiteral("END command failed with error: %1.").arg(handle.errorMessage()));
    DXError::report(error, failure(QStringLiteral("Failed to end import transaction.")));
    return false;
}

bool sendBatch(const PostgresConnectionHandle &handle, PostgresBulkInsertBuilder &builder,
               DXError *error)
{
    const QByteArray &statement = builder.takeStatement();
    if (run(handle, statement.constData()))
        return true;
    const QString message = handle.errorMessage();
    DXError::report(
        error, failure(QStringLiteral("Failed to perform insert with error: %1").arg(message)));
    DXLog(QStringLiteral("INSERT command failed with error: %1.").arg(message));
    DXLog(QStringLiteral("Insert was:\r\n%1").arg(QString::fromUtf8(statement)));
    return false;
}

bool insertRows(const PostgresConnectionHandle &handle, PostgresBulkInsertBuilder &builder,
                const QList<QList<DXValue>> &rows,
                const DabroDatabaseClient::BulkInsertProgress &progress, DXError *error)
{
    const auto count = static_cast<double>(rows.size());
    for (qsizetype row = 0; row < rows.size(); ++row) {
        if (progress && !progress(static_cast<double>(row) / count * 100.0)) {
            DXError::report(error, failure(QStringLiteral("The import was stopped; nothing was "
                                                          "inserted.")));
            return false;
        }
        if (!builder.addRow(rows[row], error))
            return false;
        if (builder.isFull() && !sendBatch(handle, builder, error))
            return false;
    }
    return builder.pendingRows() == 0 || sendBatch(handle, builder, error);
}

} // namespace

bool PostgresDatabaseClient::bulkInsert(const BulkInsert &insert,
                                        const BulkInsertProgress &progressBlock, DXError *error)
{
    DX_ASSERT_BACKGROUND();
    if (insert.columnNames.size() != insert.columnTypes.size()) {
        const QString description = QStringLiteral("The import into %1 has %2 column names and %3 "
                                                   "column types. Give each column one type.");
        DXError::report(error, failure(description.arg(
                                   insert.tableName, QString::number(insert.columnNames.size()),
                                   QString::number(insert.columnTypes.size()))));
        return false;
    }
    // Held until the end, without a connection as well: libpq then answers that there is none.
    const auto handle = m_internalConnection ? m_internalConnection
                                             : std::make_shared<PostgresConnectionHandle>(nullptr);
    if (!begin(*handle, error))
        return false;
    PostgresBulkInsertBuilder builder(escapeTablePaths(insert.tableName), insert.columnNames,
                                      insert.columnTypes);
    if (insertRows(*handle, builder, insert.rows, progressBlock, error))
        return end(*handle, "END", error);
    // On a broken connection the server rolls back by itself, and what broke it stays the error.
    if (handle->isOk())
        end(*handle, "ROLLBACK", error);
    return false;
}
