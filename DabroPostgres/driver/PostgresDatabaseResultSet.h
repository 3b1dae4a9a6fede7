// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DatabaseResultSet.h"
#include "driver/connecting/PostgresConnectionHandle.h"

#include <memory>
#include <string>
#include <vector>

class DXRowStore;

/// Walks what one query text returns, a row at a time (libpq, "Retrieving Query Results
/// Row-by-Row"). Destroying it reads and drops what is left, so that the connection can run the
/// next query; whoever does not want to wait for that cancels the query first.
class PostgresDatabaseResultSet final : public DatabaseResultSet
{
public:
    /// Reads ahead to the first row of the query that was just sent in single-row mode. error is
    /// filled when the first statement failed. The selector is `initWithClient:error:`.
    PostgresDatabaseResultSet(const std::shared_ptr<PostgresConnectionHandle> &connection,
                              DXError *error);
    ~PostgresDatabaseResultSet() override;

    bool next(DXError *error) override;
    bool nextResultSet(DXError *error) override;

    quint32 columnCount() const override { return m_totalFields; }
    DXValue objectForColumnIndex(quint32 index) const override;
    qint64 numberOfAffectedRows() const override { return m_affectedRows; }
    /// Whether the statement, which has ended, also ended a transaction, as COMMIT and ROLLBACK do.
    bool hasEndedTransaction() const;
    /// What the server calls the statement, which has ended well, such as "INSERT 0 1"; else empty.
    const QByteArray &commandTag() const { return m_commandTag; }

    /// Appends the current row to store as the bytes that the server sent.
    void appendCurrentRow(DXRowStore &store) const;
    /// The value of a cell of the type with this OID (pg_type.h): integers and numerics become
    /// numbers, booleans "True" or "False", bytea its bytes as delivered, all else text; the null
    /// marker for bytes that are not UTF-8. [any]
    static DXValue valueFromCell(quint32 typeOid, QByteArrayView bytes);

    /// Under these keys an error holds the server's SQLSTATE, and the place of the failure in the
    /// text sent, counted in characters from 1 (libpq, PG_DIAG_STATEMENT_POSITION).
    static QString sqlStateKey();
    static QString statementPositionKey();

private:
    PGresultPointer receive(DXError *error);
    PGresultPointer refuseCopyIn(PGresultPointer result);
    PGresultPointer discardCopyOut(PGresultPointer result, DXError *error);
    void processFirstRow(DXError *error);
    void prepareNextResultSet();
    bool fail(DXError *error);
    void report(DXError *slot, const DXError &error);
    void takeColumns();
    DXValue sharedText(quint32 index, QByteArrayView bytes) const;

    const std::shared_ptr<PostgresConnectionHandle> m_connection;
    PGresultPointer m_currentResult;
    // Read ahead and not handed out: a row of this statement, or what the statement begins with.
    PGresultPointer m_firstResult;
    // What the following statement begins with; while it waits, this statement is finished.
    PGresultPointer m_nextResultSetFirstResult;
    // A failure that the caller gave no slot for: the next slot gets it.
    DXError m_unreported;
    quint32 m_totalFields = 0;
    // What each column's text was last and what came of it: in catalogues many rows in turn share a
    // schema, a type or a kind, and then share its memory.
    struct LastText
    {
        std::string bytes;
        DXValue value;
    };
    mutable std::vector<LastText> m_lastTexts;
    qint64 m_affectedRows = -1;
    QByteArray m_commandTag;
    bool m_hasColumns = false;
    bool m_isAtEnd = false;
};
