// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"

#include <QString>

#include <libpq-fe.h>

#include <memory>

struct PGresultDeleter
{
    void operator()(PGresult *result) const { PQclear(result); }
};
/// A libpq result that is cleared with its owner.
using PGresultPointer = std::unique_ptr<PGresult, PGresultDeleter>;

/// The libpq connection that a client and its result sets share; the client may close it while a
/// result set still refers to it. As the client: one thread at a time.
class PostgresConnectionHandle final
{
public:
    /// Takes ownership; connection may be null or in a failed state.
    explicit PostgresConnectionHandle(PGconn *connection);
    ~PostgresConnectionHandle() { close(); }

    /// Null once closed.
    PGconn *get() const { return m_connection; }
    /// Whether the connection is open and libpq knows of no failure (PQstatus).
    bool isOk() const { return PQstatus(m_connection) == CONNECTION_OK; }
    /// libpq's current message (PQerrorMessage); empty when there is none.
    QString errorMessage() const;
    /// The current message as an error with an empty domain and code 0.
    DXError error() const { return {QStringLiteral(""), 0, errorMessage()}; }
    void close();
    /// Breaks the connection without closing it: whoever waits for the server is told at once that
    /// it is lost. May be called while another thread uses the connection, but not with close().
    void abandon() const;

private:
    Q_DISABLE_COPY_MOVE(PostgresConnectionHandle)

    PGconn *m_connection;
    // Our own descriptor of libpq's socket, which libpq closes whenever it sees fit.
    int m_socket = -1;
};
