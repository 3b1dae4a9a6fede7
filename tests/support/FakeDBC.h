// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "query/DXQuerySplitter.h"
#include "query/SQLMetadataTokenizerOptions.h"

/// A connection of no driver: it has the fields of every record and offers nothing. Tests that need
/// some capability derive from it.
class FakeDBC : public DabroDBC
{
public:
    FakeDBC() = default;
    FakeDBC(const FakeDBC &other) = default;

    std::shared_ptr<DabroDBC> copy() const override { return std::make_shared<FakeDBC>(*this); }
    QString description() const override { return host(); }
    bool isEqualToDatabaseConnectionDetails(const DabroDBC &) const override { return false; }
    const std::type_info &databaseClientClass() const override { return typeid(*this); }
    std::unique_ptr<DabroDatabaseClient> createNewClient() const override { return {}; }
    std::unique_ptr<SQLMetadataTokenizerOptions> createPreParserOptions() const override
    {
        return {};
    }
    std::unique_ptr<DXQuerySplitter> createQuerySplitter() const override { return {}; }
    QStringList sqlKeywords() const override { return {}; }
    QStringList sqlFunctions() const override { return {}; }
    QStringList functionsAndKeywords() const override { return {}; }
};
