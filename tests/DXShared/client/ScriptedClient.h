// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DatabaseResultSet.h"
#include "support/DXWait.h"
#include "support/FakeDBC.h"

#include <condition_variable>
#include <mutex>

/// What the scripted clients of one test connect to. [any]
class ScriptedServer final
{
public:
    /// Ends every session; new ones are taken unless it stays down.
    void restart(bool staysDown = false);
    void setResetWorks(bool works);
    /// Connecting takes until it is given up.
    void setStalls();
    /// Opened by whoever connects to a server that stalls.
    DXWait::Gate stalled;

    int sessionsEver() const;
    int sessionsOpen() const;
    int mostSessions() const;

private:
    friend class ScriptedClient;

    mutable std::mutex m_mutex;
    std::condition_variable m_cancelled;
    int m_epoch = 0;
    int m_ever = 0;
    int m_open = 0;
    int m_most = 0;
    bool m_isDown = false;
    bool m_resetWorks = true;
    bool m_stalls = false;
};

/// A client whose statements are "begin", "die" (the server restarts under it) and "sleep" (until
/// cancelled); any other text succeeds.
class ScriptedClient final : public DabroDatabaseClient
{
public:
    explicit ScriptedClient(ScriptedServer &server)
        : m_server(server)
    { }
    ~ScriptedClient() override { ScriptedClient::disconnect(); }

    using DabroDatabaseClient::connect;
    using DabroDatabaseClient::initializeSSH;
    bool connect(DXError *error, DXSSHDelegate *sshDelegate) override;
    void disconnect() override;
    bool isConnected() const override { return m_isConnected; }
    bool isAlive() const override;
    bool isInTransaction() const override { return m_isInTransaction; }
    bool resetSession(DXError *error) override;
    bool executeNonQuery(const QString &query, DXError *error) override;
    bool cancelCurrentQuery(DXError *error) override;
    void abandonConnection() override { }

    std::unique_ptr<DatabaseResultSet> executeQuery(const QString &, DXError *) override
    {
        return {};
    }
    bool executeQueryDetails(const QList<DXQueryDetails> &, DXQueryResult &,
                             const std::function<void()> &, DXError *) override
    {
        return false;
    }
    bool beginTransaction(DXError *) override { return false; }
    bool commitTransaction(DXError *) override { return false; }
    bool rollbackTransaction(DXError *) override { return false; }
    DXError lastError() const override { return {}; }
    QString serverVersion() const override { return {}; }
    bool bulkInsert(const BulkInsert &, const BulkInsertProgress &, DXError *) override
    {
        return false;
    }
    QString escapeTablePaths(const QString &) const override { return {}; }
    QString escapeColumnValue(const DXValue &) const override { return {}; }
    DXValue databaseProviderEscape(const DXValue &) const override { return {}; }

    /// Statements run so far; unguarded, so that ThreadSanitizer sees a client lent twice at once.
    int statements = 0;

private:
    ScriptedServer &m_server;
    int m_epoch = 0;
    bool m_isConnected = false;
    bool m_isInTransaction = false;
    // Guarded by the server's mutex.
    bool m_isSleeping = false;
};

/// A record whose clients are scripted; records of different hosts have different session keys.
class ScriptedDBC final : public FakeDBC
{
public:
    explicit ScriptedDBC(ScriptedServer &server, const QString &host = QStringLiteral("a"))
        : m_server(server)
    {
        setHost(host);
    }
    std::shared_ptr<DabroDBC> copy() const override { return std::make_shared<ScriptedDBC>(*this); }
    std::unique_ptr<DabroDatabaseClient> createNewClient() const override
    {
        auto client = std::make_unique<ScriptedClient>(m_server);
        client->setDatabaseConnectionDetails(copy());
        return client;
    }

private:
    ScriptedServer &m_server;
};
