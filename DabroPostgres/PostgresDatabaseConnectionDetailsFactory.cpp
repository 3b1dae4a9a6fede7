// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "actions/PostgresDatabaseTreeContextHelper.h"
#include "connection/PostgresConnectionWindowController.h"
#include "driver/PostgresDatabaseClient.h"
#include "driver/PostgresDatabaseConnectionDetails.h"
#include "driver/PostgresRecentConnection.h"
#include "query/DXQuerySplitter.h"
#include "query/SQLMetadataTokenizerOptions.h"
#include "scripts/PostgresScriptCatalogue.h"
#include "tree/PostgresAutocompleteHelper.h"
#include "tree/PostgresDatabaseTreeEntryServer.h"
#include "ui/query/DXQueryPreviewViewController.h"

// The operations of the record that hand out objects of every room, so that the record itself stays
// below them.

SQLRecentConnectionList *PostgresDatabaseConnectionDetails::recentConnectionClass() const
{
    return &PostgresRecentConnection::savedConnections();
}

const std::type_info &PostgresDatabaseConnectionDetails::databaseClientClass() const
{
    return typeid(PostgresDatabaseClient);
}

std::unique_ptr<DabroDatabaseClient> PostgresDatabaseConnectionDetails::createNewClient() const
{
    auto client = std::make_unique<PostgresDatabaseClient>();
    client->setDatabaseConnectionDetails(copy());
    return client;
}

std::unique_ptr<SQLMetadataTokenizerOptions>
PostgresDatabaseConnectionDetails::createPreParserOptions() const
{
    auto options = std::make_unique<SQLMetadataTokenizerOptions>();
    options->setHashMarksAreComments(false);
    options->setAllowNestedMultilineComments(true);
    options->setIncludeMSSQLVariables(false);
    return options;
}

std::unique_ptr<DXQuerySplitter> PostgresDatabaseConnectionDetails::createQuerySplitter() const
{
    return std::make_unique<DXQuerySplitter>(*createPreParserOptions());
}

std::shared_ptr<DXScriptCatalogue> PostgresDatabaseConnectionDetails::createScriptCatalogue() const
{
    return std::make_shared<PostgresScriptCatalogue>();
}

std::shared_ptr<DXAutocompleteHelper>
PostgresDatabaseConnectionDetails::sharedAutocompleteHelper() const
{
    return PostgresAutocompleteHelper::sharedInstance();
}

std::shared_ptr<DatabaseTreeEntryServerRoot>
PostgresDatabaseConnectionDetails::createRootDatabaseTreeNode() const
{
    return std::make_shared<PostgresDatabaseTreeEntryServer>();
}

std::shared_ptr<DXDatabaseTreeContextHelper>
PostgresDatabaseConnectionDetails::createDatabaseTreeContextHelper(
    DXDatabaseTreeViewController &controller) const
{
    return std::make_shared<PostgresDatabaseTreeContextHelper>(controller);
}

std::shared_ptr<DXQueryPreviewViewController>
PostgresDatabaseConnectionDetails::createQueryPreviewViewContoller() const
{
    return std::make_shared<DXQueryPreviewViewController>(copy());
}

std::shared_ptr<DXConnectionWindowController>
PostgresDatabaseConnectionDetails::createConnectionWindowController() const
{
    return std::make_shared<PostgresConnectionWindowController>(
        std::static_pointer_cast<const PostgresDatabaseConnectionDetails>(copy()),
        *recentConnectionClass());
}
