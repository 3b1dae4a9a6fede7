// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresDatabaseClient.h"

#include "core/DXLogHelper.h"
#include "dispatch/DXDispatch.h"
#include "driver/PostgresDatabaseResultSet.h"
#include "driver/connecting/PostgresConnectionHandle.h"

#include <array>
#include <cstdio>

DXError PostgresDatabaseClient::refusalOf(const QString &query)
{
    const qsizetype position = query.indexOf(QChar(QChar::Null));
    if (position < 0)
        return {};
    return {QStringLiteral(""), 0,
            QStringLiteral("The statement holds a NUL character (U+0000) at position %1, which "
                           "PostgreSQL cannot take. Remove it.")
                .arg(position + 1)};
}

std::unique_ptr<DatabaseResultSet> PostgresDatabaseClient::executeQuery(const QString &query,
                                                                        DXError *error)
{
    DX_ASSERT_BACKGROUND();
    if (!m_internalConnection) {
        DXLog(QStringLiteral("Closed"));
        return {};
    }
    if (const DXError refusal = refusalOf(query)) {
        DXError::report(error, refusal);
        return {};
    }
    PGconn *const connection = m_internalConnection->get();
    if (PQsendQuery(connection, query.toUtf8().constData()) == 0) {
        DXLog(QStringLiteral("Query failed: %1").arg(m_internalConnection->errorMessage()));
        DXError::report(error, m_internalConnection->error());
        return {};
    }
    m_lastQueryExecuted = query;
    if (PQsetSingleRowMode(connection) == 0) {
        DXLog(QStringLiteral("Failed to put query in single row mode: %1")
                  .arg(m_internalConnection->errorMessage()));
        DXError::report(error, m_internalConnection->error());
        return {};
    }
    DXError failure;
    auto resultSet = std::make_unique<PostgresDatabaseResultSet>(m_internalConnection, &failure);
    if (failure) {
        DXLog(QStringLiteral("Failed to execute: %1").arg(failure.description()));
        DXError::report(error, failure);
    }
    return resultSet;
}

bool PostgresDatabaseClient::executeNonQuery(const QString &query, DXError *error)
{
    if (const auto resultSet = executeQuery(query, error)) {
        do {
            while (resultSet->next(error)) { }
        } while (resultSet->nextResultSet(error));
    }
    return true;
}

// libpq keeps what LISTEN brings until somebody asks (libpq, "Asynchronous Notification").
void PostgresDatabaseClient::forwardNotifications()
{
    const auto release = [](PGnotify *notification) { PQfreemem(notification); };
    for (;;) {
        const std::unique_ptr<PGnotify, decltype(release)> notification(
            PQnotifies(m_internalConnection->get()));
        if (!notification)
            return;
        const QString payload =
            *notification->extra
                ? QStringLiteral(" with payload \"%1\"").arg(QString::fromUtf8(notification->extra))
                : QString();
        const QString text =
            QStringLiteral("Asynchronous notification \"%1\"%2 from server process %3.\n")
                .arg(QString::fromUtf8(notification->relname), payload,
                     QString::number(notification->be_pid));
        if (noticeHandler())
            noticeHandler()(text);
        else
            std::fputs(text.toUtf8().constData(), stderr);
    }
}

bool PostgresDatabaseClient::beginTransaction(DXError *error)
{
    return executeNonQuery(QStringLiteral("BEGIN"), error);
}

bool PostgresDatabaseClient::commitTransaction(DXError *error)
{
    const bool hasFailed = hasFailedTransaction();
    DXError failure;
    executeNonQuery(QStringLiteral("COMMIT"), &failure);
    // The server takes this for a success.
    if (hasFailed && !failure)
        failure = {QStringLiteral(""), 0,
                   QStringLiteral("The transaction was rolled back instead of committed, because a "
                                  "statement in it had failed.")};
    if (failure)
        DXError::report(error, failure);
    return true;
}

bool PostgresDatabaseClient::rollbackTransaction(DXError *error)
{
    return executeNonQuery(QStringLiteral("ROLLBACK"), error);
}

DXError PostgresDatabaseClient::lastError() const
{
    const QString message = m_internalConnection ? m_internalConnection->errorMessage() : QString();
    if (message.isEmpty())
        return {};
    return {QStringLiteral("Postgres"), 0, message};
}

bool PostgresDatabaseClient::cancelCurrentQuery(DXError *error)
{
    Q_UNUSED(error)
    const auto release = [](PGcancel *cancel) { PQfreeCancel(cancel); };
    std::unique_ptr<PGcancel, decltype(release)> cancel;
    {
        const std::lock_guard lock(m_handleMutex);
        if (m_internalConnection)
            cancel.reset(PQgetCancel(m_internalConnection->get()));
    }
    std::array<char, 256> message{};
    if (PQcancel(cancel.get(), message.data(), static_cast<int>(message.size())) == 0) {
        DXLog(QStringLiteral("Cancel failed: %1").arg(QString::fromUtf8(message.data())));
        return false;
    }
    DXLog(QStringLiteral("Cancel"));
    return true;
}

void PostgresDatabaseClient::abandonConnection()
{
    const std::lock_guard lock(m_handleMutex);
    if (m_internalConnection)
        m_internalConnection->abandon();
}
