// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/SQLRecentConnection.h"
#include "driver/PostgresSSLDetails.h"

#include <memory>

class SQLRecentConnectionList;

/// One saved PostgreSQL connection. [main]
class PostgresRecentConnection final : public SQLRecentConnection
{
public:
    PostgresRecentConnection() = default;

    /// All of them, not loaded yet when first asked for.
    static SQLRecentConnectionList &savedConnections();

    /// Absent when the user never configured TLS.
    std::shared_ptr<PostgresSSLDetails> sslDetails() const { return m_sslDetails; }
    void setSslDetails(const std::shared_ptr<PostgresSSLDetails> &details)
    {
        m_sslDetails = details;
    }
    /// What the client library is told besides, by name (PostgresConnectionParameters).
    QMap<QString, QString> connectionParameters() const { return m_connectionParameters; }
    void setConnectionParameters(const QMap<QString, QString> &parameters)
    {
        m_connectionParameters = parameters;
    }
    /// Whether the tree lists the objects of all schemas together, as one group; else each schema
    /// has a node of its own.
    bool groupSchemas() const { return m_groupSchemas; }
    void setGroupSchemas(bool groupSchemas) { m_groupSchemas = groupSchemas; }

    QString icon32() const override { return QStringLiteral("ConnectionWindow-Postgres"); }
    QString iconLarge() const override { return QStringLiteral("ConnectionPostgres"); }
    std::shared_ptr<DabroDBC> createDatabaseConnectionDetails() const override;
    void copyFrom(const SQLRecentConnection &other) override;
    void didLoad() override;
    QCborMap encode() const override;
    void decode(const QCborMap &archive) override;

private:
    std::shared_ptr<PostgresSSLDetails> m_sslDetails;
    QMap<QString, QString> m_connectionParameters;
    bool m_groupSchemas = false;
};
