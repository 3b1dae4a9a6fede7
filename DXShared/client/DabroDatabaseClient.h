// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXQueryDetails.h"
#include "core/DXError.h"
#include "core/DXGlobal.h"
#include "core/DXValue.h"

#include <QStringList>

#include <functional>
#include <memory>

class DabroDBC;
class DatabaseResultSet;
class DXQueryResult;
class DXSSHDelegate;
class DXSSHTunnel;

/// One connection to a server. It serves one query at a time and has no lock of its own: one thread
/// at a time uses it, except for cancelCurrentQuery(). Operations that talk to the server block, so
/// they are [background]. Each says which kind it is: *result decides* (the result tells whether it
/// worked), *slot decides* (true even on failure: look at error).
class DXSHARED_EXPORT DabroDatabaseClient
{
public:
    virtual ~DabroDatabaseClient();

    /// The record that this client connects with, its own copy.
    std::shared_ptr<DabroDBC> databaseConnectionDetails() const { return m_details; }
    void setDatabaseConnectionDetails(const std::shared_ptr<DabroDBC> &details)
    {
        m_details = details;
    }

    /// As the following, without a delegate.
    bool connect(DXError *error) { return connect(error, nullptr); }
    /// Connects, through a tunnel when the record has one. *Result decides.* The selector is
    /// `connect:sshDelegate:`.
    virtual bool connect(DXError *error, DXSSHDelegate *sshDelegate) = 0;
    /// Closes the connection and its tunnel; nothing when there is none.
    virtual void disconnect() = 0;
    virtual bool isConnected() const = 0;
    /// Whether the server still is at the other end, told without sending anything: false once the
    /// connection was closed while idle.
    virtual bool isAlive() const = 0;
    /// Whether a transaction is open, so that giving the connection to somebody else would leak it.
    virtual bool isInTransaction() const = 0;
    /// Whether a transaction is open in which a statement failed, so that the server refuses all
    /// others until it is rolled back, or back to a savepoint. False for drivers whose servers go
    /// on after a failure.
    virtual bool hasFailedTransaction() const;
    /// Puts the session back as connect() left it, so that another borrower can use it. *Result
    /// decides.*
    virtual bool resetSession(DXError *error) = 0;

    /// Sends query, which may hold several statements; the answer stands before its first row.
    /// *Result decides* whether it could be sent. When the server refused the first statement there
    /// is an answer, without rows, and error is filled.
    virtual std::unique_ptr<DatabaseResultSet> executeQuery(const QString &query,
                                                            DXError *error) = 0;
    /// Runs query and drains what it returns. *Slot decides.*
    virtual bool executeNonQuery(const QString &query, DXError *error) = 0;
    /// Runs the statements as one batch and fills result, one entry a statement; block is called on
    /// this thread after each one. *Slot decides*: a statement's error is also its message. The
    /// selector is `executeQueryDetails:withResultSet:withBlock:error:`.
    virtual bool executeQueryDetails(const QList<DXQueryDetails> &queryDetails,
                                     DXQueryResult &resultSet, const std::function<void()> &block,
                                     DXError *error) = 0;
    /// Asks the server to stop the running query. True when the request was sent. [any]
    virtual bool cancelCurrentQuery(DXError *error) = 0;
    /// Breaks the connection under whoever waits for it, for a server that no longer answers: what
    /// runs fails at once. Does not block; nothing for clients that are not connected. [any]
    virtual void abandonConnection() = 0;

    /// *Slot decides*, all three. A transaction that the server rolls back instead of committing
    /// it, because something in it had failed, was not committed: that is an error.
    virtual bool beginTransaction(DXError *error) = 0;
    virtual bool commitTransaction(DXError *error) = 0;
    virtual bool rollbackTransaction(DXError *error) = 0;

    /// The connection's current error; empty when there is none.
    virtual DXError lastError() const = 0;
    /// The server's version, such as 15.4; null before a successful connect.
    virtual QString serverVersion() const = 0;
    /// How the server is reached, as one line for people: the socket or address, TLS version and
    /// cipher if any, the tunnel; such as "TCP 127.0.0.1:5432, TLSv1.3 (TLS_AES_256_GCM_SHA384)".
    /// No secrets. Null while not connected, and for drivers that cannot tell.
    virtual QString connectionSummary() const;
    /// Whether the last connect() failed because the server asked for a password and there was none
    /// in the record or wherever else the driver looks: worth asking the user for.
    virtual bool connectionNeedsPassword() const;

    /// Arguments of bulkInsert(); rows hold cells in column order, types are type names as text.
    struct BulkInsert
    {
        const QList<QList<DXValue>> &rows;
        QString tableName;
        QStringList columnNames;
        QStringList columnTypes;
    };
    /// Told the percentage done, 0 to below 100, before each row, on the inserting thread; answers
    /// false to stop, which rolls everything back.
    using BulkInsertProgress = std::function<bool(double percent)>;
    /// Loads rows into a table in one transaction. *Result decides.* The selector is
    /// `bulkInsert:intoTable:columnNames:columnTypes:progressBlock:error:`.
    virtual bool bulkInsert(const BulkInsert &insert, const BulkInsertProgress &progressBlock,
                            DXError *error) = 0;

    /// The table path with each dot-separated part quoted where needed. [any]
    virtual QString escapeTablePaths(const QString &tablePath) const = 0;
    /// The value as an SQL literal. [any]
    virtual QString escapeColumnValue(const DXValue &value) const = 0;
    /// A text as a literal made by the server's client library; other values unchanged.
    virtual DXValue databaseProviderEscape(const DXValue &value) const = 0;

    /// Told of each notice or warning that the server sends, on the thread that runs the query. Set
    /// before connect().
    using NoticeHandler = std::function<void(const QString &notice)>;
    void setNoticeHandler(const NoticeHandler &handler) { m_noticeHandler = handler; }

protected:
    DabroDatabaseClient();
    const NoticeHandler &noticeHandler() const { return m_noticeHandler; }

    /// Opens the tunnel that the record describes to its host and port; nothing, with error set, on
    /// failure. The selector is `initializeSSH:error:`.
    std::unique_ptr<DXSSHTunnel> initializeSSH(DXSSHDelegate *sshDelegate, DXError *error) const;

private:
    Q_DISABLE_COPY_MOVE(DabroDatabaseClient)

    std::shared_ptr<DabroDBC> m_details;
    NoticeHandler m_noticeHandler;
};
