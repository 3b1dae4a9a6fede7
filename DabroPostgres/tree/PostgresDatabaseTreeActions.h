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
    /// What not every helper can do.
    enum class Capability { AlterTable, RenameTable, InsertRow, ExportAsSQLite };
    /// Whether entry's menu may offer it now; it shows the item disabled otherwise, and nobody
    /// calls its action.
    virtual bool isCapableOf(Capability capability, const Entry &entry) const = 0;

    /// query is the text of the template "NewTable".
    virtual void addNewTable(const Entry &entry, const QString &query) = 0;
    /// These do nothing unless a helper that is capable of them says more.
    virtual void alterTable(const Entry &entry);
    virtual void renameTable(const Entry &entry);
    virtual void displayInsertDialog(const Entry &entry);
    virtual void exportDatabaseAsSQLite(const Entry &entry);

    /// Ask before they drop what entry stands for.
    virtual void confirmDropDatabase(const Entry &entry) = 0;
    virtual void confirmDropTable(const Entry &entry) = 0;
    virtual void confirmDropColumn(const Entry &entry) = 0;
    virtual void confirmDropFunction(const Entry &entry) = 0;
    virtual void confirmDropSequence(const Entry &entry) = 0;
    virtual void confirmDropType(const Entry &entry) = 0;
    virtual void confirmDropIndex(const Entry &entry) = 0;
};
