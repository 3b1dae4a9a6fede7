// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeViewController.h"

/// Carries out what the menus and keys of a catalogue tree offer on its nodes; a driver derives
/// from it for the actions that only it knows. One per tree, made and owned by the tree's view,
/// which outlives it. All [main].
class DXSHARED_EXPORT DXDatabaseTreeContextHelper
{
public:
    explicit DXDatabaseTreeContextHelper(DXDatabaseTreeViewController &controller);
    virtual ~DXDatabaseTreeContextHelper();

    DXDatabaseTreeViewController &databaseTreeViewController() const { return m_controller; }

    /// Opens a query tab on the entry's connection, empty unless query is given.
    void addQueryTab(const DXDatabaseTreeEntry &entry, const QString &query = {});
    /// Opens a query tab and runs query in it.
    void executeQueryTab(const DXDatabaseTreeEntry &entry, const QString &query);
    /// Opens a query tab with the loader's text.
    void addQueryTabWithQueryLoader(const DXDatabaseTreeEntry &entry,
                                    const std::shared_ptr<DXQueryLoader> &loader);
    /// Opens a query tab and runs the loader's text in it.
    void addAndExecuteQueryTabWithQueryLoader(const DXDatabaseTreeEntry &entry,
                                              const std::shared_ptr<DXQueryLoader> &loader);
    void sendScript(const DXDatabaseTreeEntry &entry, const std::shared_ptr<DXQueryLoader> &loader,
                    DXDatabaseTreeViewControllerDelegate::ScriptDestination destination);
    void openConnectionDialog(const DXDatabaseTreeEntry &entry);
    void disconnect(const DXDatabaseTreeEntry &entry);
    /// Whether the driver has what an import needs; the item is disabled without.
    virtual bool canImportInto(const DXDatabaseTreeEntry &entry) const;
    void importInto(const DXDatabaseTreeEntry &entry);
    /// tablePath is quoted already.
    void exportTableAsCSV(const DXDatabaseTreeEntry &entry, const QString &tablePath);
    /// Opens a query tab with the template of a stored procedure, on the connection of the selected
    /// node; nothing when none is selected, or the driver knows no procedures.
    virtual void newStoredProcedure();
    void beep();

private:
    Q_DISABLE_COPY_MOVE(DXDatabaseTreeContextHelper)

    DXDatabaseTreeViewController &m_controller;
};
