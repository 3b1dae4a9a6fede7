// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeContextHelper.h"

/// What the menus of this driver's tree ask for beyond what every driver's do: the actions that
/// show dialogs, which live above the tree. All [main].
class PostgresDatabaseTreeActions : public DXDatabaseTreeContextHelper
{
public:
    using DXDatabaseTreeContextHelper::DXDatabaseTreeContextHelper;
    ~PostgresDatabaseTreeActions() override;

    using Entry = DXDatabaseTreeEntry;
    /// query is the text of the template "NewTable".
    virtual void addNewTable(const Entry &entry, const QString &query) = 0;
    virtual void alterTable(const Entry &entry) = 0;
    virtual void renameTable(const Entry &entry) = 0;
    virtual void displayInsertDialog(const Entry &entry) = 0;
    virtual void exportDatabaseAsSQLite(const Entry &entry) = 0;

    /// Ask before they drop what entry stands for.
    virtual void confirmDropDatabase(const Entry &entry) = 0;
    virtual void confirmDropTable(const Entry &entry) = 0;
    virtual void confirmDropColumn(const Entry &entry) = 0;
    virtual void confirmDropFunction(const Entry &entry) = 0;
    virtual void confirmDropSequence(const Entry &entry) = 0;
    virtual void confirmDropType(const Entry &entry) = 0;
    virtual void confirmDropIndex(const Entry &entry) = 0;
};
