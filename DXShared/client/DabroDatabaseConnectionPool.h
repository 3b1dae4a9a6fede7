// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "core/DXGlobal.h"

#include <functional>
#include <memory>

class DabroDBC;
class DabroDatabaseClient;

/// Connected clients, lent to blocks. Keyed by everything that makes a session
/// (DabroDBC::sessionKey()); the number of connections a key may have is bounded and callers beyond
/// it wait; idle ones are closed after a while; one that died while idle is replaced before a block
/// runs, so that a restarted server costs nobody an error. [background]
class DXSHARED_EXPORT DabroDatabaseConnectionPool final
{
public:
    /// Runs with a connected client on the calling thread; it reports its failure through error.
    using Block = std::function<void(DabroDatabaseClient &client, DXError *error)>;

    enum class RetryOnError { No, Yes };
    enum class AllowPooled { No, Yes };
    enum class IsUserQuery { No, Yes };

    struct Options
    {
        /// Runs the block a second time, on a fresh connection, when the connection broke under the
        /// first.
        RetryOnError retryOnError = RetryOnError::No;
        /// No: a connection of its own, closed afterwards.
        AllowPooled allowPooled = AllowPooled::Yes;
        /// Whether the user asked for it, rather than the program for itself; only user queries
        /// keep the idle ones from being closed.
        IsUserQuery isUserQuery = IsUserQuery::Yes;
    };

    /// Lends a client for connectionDetails to block and returns once block has. *Result decides*:
    /// false when no connection was to be had or block left an error; error tells which. The
    /// selectors are `executeQuery:withConnectionDetails:error:`, `…retryOnError:` and
    /// `…allowPooled:isUserQuery:`.
    static bool executeQuery(const Block &block, const DabroDBC &connectionDetails, DXError *error,
                             const Options &options);
    static bool executeQuery(const Block &block, const DabroDBC &connectionDetails, DXError *error)
    {
        return executeQuery(block, connectionDetails, error, Options());
    }

    /// Takes client, which connected with the details it holds and does nothing, as one that idles,
    /// so that whoever needs a connection next need not log in. Nobody else uses it from now on.
    /// One that there is no room for, or that comes after shutdown(), is closed in the background.
    /// [any]
    static void adopt(const std::shared_ptr<DabroDatabaseClient> &client);

    /// Closes idle connections of these details, and those in use once they come back. [any]
    static void disconnectAll(const DabroDBC &connectionDetails);
    /// Cancels what runs, refuses what comes, and closes everything. [any]
    static void shutdown();

    /// While one lives on the main thread, executeQuery() may be called there: for the few places
    /// that have to, found by searching for this name.
    class DXSHARED_EXPORT MainThreadExemption final
    {
    public:
        MainThreadExemption();
        ~MainThreadExemption();

    private:
        Q_DISABLE_COPY_MOVE(MainThreadExemption)
    };

private:
    DabroDatabaseConnectionPool() = delete;
};
