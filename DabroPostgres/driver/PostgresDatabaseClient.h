// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DabroDatabaseClient.h"
#include "driver/PostgresDatabaseConnectionDetails.h"

#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

class PostgresConnectionHandle;
class PostgresDatabaseResultSet;

/// One libpq connection. See DabroDatabaseClient for threads and failures.
class PostgresDatabaseClient final : public DabroDatabaseClient
{
public:
    PostgresDatabaseClient();
    explicit PostgresDatabaseClient(
        const std::shared_ptr<PostgresDatabaseConnectionDetails> &details);
    ~PostgresDatabaseClient() override;

    using DabroDatabaseClient::connect;
    bool connect(DXError *error, DXSSHDelegate *sshDelegate) override;
    void disconnect() override;
    bool isConnected() const override;
    bool isAlive() const override;
    bool isInTransaction() const override;
    bool hasFailedTransaction() const override;
    bool resetSession(DXError *error) override;
    /// The server's version, such as 9.6.2; null before a successful connect.
    QString postgresVersion() const { return m_internalVersionString; }
    QString serverVersion() const override { return postgresVersion(); }
    QString connectionSummary() const override;
    bool connectionNeedsPassword() const override;
    /// The last text handed to the server.
    QString lastQueryExecuted() const { return m_lastQueryExecuted; }

    /// The libpq connection string (libpq, "Connection Strings") for the record, through tunnel
    /// when given. It holds the password; what is logged of it does not. [background]
    QString generateConnectionString(const DXSSHTunnel *tunnel, const QString &database) const;
    /// Appends the TLS options of details to options.
    void processSSQLConnectionString(const PostgresDatabaseConnectionDetails &details,
                                     QStringList &connectionOptions) const;
    /// A value of a connection string, quoted.
    static QString escapeConnectionStringEntry(const QString &text);
    /// Hands a connection's error to the log, unless it is one of the routine ones.
    static void reportError(const DXError &error, const QString &details);
    static void reportError(const DXError &error, const QVariantMap &details);

    std::unique_ptr<DatabaseResultSet> executeQuery(const QString &query, DXError *error) override;
    bool executeNonQuery(const QString &query, DXError *error) override;
    using RowBlock = std::function<void(const DatabaseResultSet &row)>;
    enum class ReadOnly { No, Yes };
    /// Runs query, which the server refuses when it is more than one statement, and calls block for
    /// each row. It runs in a transaction of its own, or else in a subtransaction of the one that
    /// is open, which is rolled back: nothing in the session is other than before. *Slot decides*;
    /// rows that came before a failure have been handed out.
    void executeSingleStatement(const QString &query, ReadOnly readOnly, const RowBlock &block,
                                DXError *error);
    bool executeQueryDetails(const QList<DXQueryDetails> &queryDetails, DXQueryResult &resultSet,
                             const std::function<void()> &block, DXError *error) override;
    bool cancelCurrentQuery(DXError *error) override;
    void abandonConnection() override;
    bool beginTransaction(DXError *error) override;
    bool commitTransaction(DXError *error) override;
    bool rollbackTransaction(DXError *error) override;
    DXError lastError() const override;
    /// The error with the failing stretch of the editor's text under
    /// DXError::queryErrorRangesKey(), when libpq's message or the server's position tells it;
    /// query is the text that was sent, offset its place in the editor.
    static DXError processErrorDetails(const DXError &error, const QString &query,
                                       qsizetype offset);

    bool bulkInsert(const BulkInsert &insert, const BulkInsertProgress &progressBlock,
                    DXError *error) override;

    /// A name, or two joined by a dot, each in double quotes when it holds blanks, hyphens or
    /// upper-case ASCII letters or is a keyword. Already quoted names stay. [any]
    static QString escapeTableNameIfRequired(const QString &name);
    /// The name without one pair of enclosing double quotes. [any]
    static QString unescapeTableNameIfRequired(const QString &name);
    /// The value as an SQL literal. [any]
    static QString escapeValue(const DXValue &value);
    QString escapeColumnValue(const DXValue &value) const override { return escapeValue(value); }
    QString escapeTablePaths(const QString &tablePath) const override;
    /// The same for a path in parts, which may hold dots of their own. [any]
    static QString escapeTablePaths(const QStringList &tablePath);
    DXValue databaseProviderEscape(const DXValue &value) const override;
    /// The elements of an array's text form; nothing when it is not in braces. [any]
    static std::optional<QStringList> splitPostgresArray(const QString &array);
    struct SchemaAndObject
    {
        /// Null when the name has no schema.
        QString schema;
        QString object;
    };
    /// The parts of a qualified name, without any quotes. The selector is
    /// `splitString:intoSchema:andObject:`. [any]
    static SchemaAndObject splitString(const QString &name);
    /// Whether every character is a letter, mark, digit, "_" or "-". [any]
    static bool isTableNameValid(const QString &name);

private:
    bool openConnection(DXSSHDelegate *sshDelegate, DXError *error);
    bool openTunnel(DXSSHDelegate *sshDelegate, DXError *error);
    void openHandle(const QString &database);
    DXError connectionFailure() const;
    DXError withTunnelsEnd(const DXError &failure) const;
    bool prepareEncoding(DXError *error);
    bool applySessionPreferences(DXError *error);
    bool readVersion(DXError *error);
    void readSingleStatement(std::size_t statementsBefore, const RowBlock &block, DXError *error);
    /// Filled when query holds what PostgreSQL cannot take.
    static DXError refusalOf(const QString &query);
    void forwardNotifications();
    const PostgresDatabaseConnectionDetails &postgresDetails() const;

    // Guards the pointer, not the connection: cancelling comes from other threads.
    mutable std::mutex m_handleMutex;
    std::shared_ptr<PostgresConnectionHandle> m_internalConnection;
    std::unique_ptr<DXSSHTunnel> m_tunnel;
    // Where the password of the last attempt came from; empty for anywhere else.
    QString m_passwordFile;
    QString m_internalVersionString;
    QString m_lastQueryExecuted;
};
