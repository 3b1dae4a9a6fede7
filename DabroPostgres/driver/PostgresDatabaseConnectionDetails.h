// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DabroDBC.h"
#include "driver/PostgresSSLDetails.h"

#include <memory>

/// A PostgreSQL connection, and the factory of everything that this driver offers for it.
class PostgresDatabaseConnectionDetails final : public DabroDBC
{
public:
    static constexpr quint16 defaultPort = 5432;

    PostgresDatabaseConnectionDetails() = default;

    /// Words that need quoting as a name, or begin a statement; sorted, without duplicates. [any]
    static const QStringList &keywords();

    /// Absent when the user never configured TLS.
    std::shared_ptr<PostgresSSLDetails> sslDetails() const { return m_sslDetails; }
    void setSslDetails(const std::shared_ptr<PostgresSSLDetails> &details)
    {
        m_sslDetails = details;
    }
    /// What libpq is told besides (PostgresConnectionParameters), by name.
    QMap<QString, QString> connectionParameters() const { return m_connectionParameters; }
    void setConnectionParameters(const QMap<QString, QString> &parameters)
    {
        m_connectionParameters = parameters;
    }
    /// Whether connecting needs the server's name rather than its address: TLS is asked for, whose
    /// greeting tells the name to a host of many servers, and whose certificate is checked against
    /// it; the password file is searched by it (libpq, "The Password File"); or parameters such as
    /// hostaddr and krbsrvname are about it.
    bool needsHostName() const;

    std::shared_ptr<DabroDBC> copy() const override;
    QString description() const override;
    /// Needs id, host, user and password on this record, so two records without a password differ.
    bool isEqualToDatabaseConnectionDetails(const DabroDBC &other) const override;
    QByteArray sessionKey() const override;

    SQLRecentConnectionList *recentConnectionClass() const override;
    const std::type_info &databaseClientClass() const override;
    std::unique_ptr<DabroDatabaseClient> createNewClient() const override;
    std::unique_ptr<SQLMetadataTokenizerOptions> createPreParserOptions() const override;
    std::unique_ptr<DXQuerySplitter> createQuerySplitter() const override;
    std::shared_ptr<DXScriptCatalogue> createScriptCatalogue() const override;
    std::shared_ptr<DXAutocompleteHelper> sharedAutocompleteHelper() const override;
    std::shared_ptr<DatabaseTreeEntryServerRoot> createRootDatabaseTreeNode() const override;
    std::shared_ptr<DXDatabaseTreeContextHelper>
    createDatabaseTreeContextHelper(DXDatabaseTreeViewController &controller) const override;
    std::shared_ptr<DXQueryPreviewViewController> createQueryPreviewViewContoller() const override;
    std::shared_ptr<DXConnectionWindowController> createConnectionWindowController() const override;

    QStringList sqlKeywords() const override { return keywords(); }
    QStringList sqlFunctions() const override;
    QStringList functionsAndKeywords() const override;

    void encode(QCborMap &archive) const override;
    void decode(const QCborMap &archive) override;

private:
    PostgresDatabaseConnectionDetails(const PostgresDatabaseConnectionDetails &other);

    std::shared_ptr<PostgresSSLDetails> m_sslDetails;
    QMap<QString, QString> m_connectionParameters;
};
