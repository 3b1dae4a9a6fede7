// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/DXDatabaseTreeContextHelper.h"

#include "client/DabroDBC.h"
#include "tree/DXDatabaseTreeEntry.h"

using Delegate = DXDatabaseTreeViewControllerDelegate;

DXDatabaseTreeContextHelper::DXDatabaseTreeContextHelper(DXDatabaseTreeViewController &controller)
    : m_controller(controller)
{ }

DXDatabaseTreeContextHelper::~DXDatabaseTreeContextHelper() = default;

void DXDatabaseTreeContextHelper::addQueryTab(const DXDatabaseTreeEntry &entry,
                                              const QString &query)
{
    m_controller.delegate().addNewQueryTab(query, entry.databaseConnectionDetails(),
                                           Delegate::QueryTab::Open);
}

void DXDatabaseTreeContextHelper::executeQueryTab(const DXDatabaseTreeEntry &entry,
                                                  const QString &query)
{
    m_controller.delegate().addNewQueryTab(query, entry.databaseConnectionDetails(),
                                           Delegate::QueryTab::OpenAndExecute);
}

void DXDatabaseTreeContextHelper::addQueryTabWithQueryLoader(
    const DXDatabaseTreeEntry &entry, const std::shared_ptr<DXQueryLoader> &loader)
{
    m_controller.delegate().addNewQueryTabWithLoader(loader, entry.databaseConnectionDetails(),
                                                     Delegate::QueryTab::Open);
}

void DXDatabaseTreeContextHelper::addAndExecuteQueryTabWithQueryLoader(
    const DXDatabaseTreeEntry &entry, const std::shared_ptr<DXQueryLoader> &loader)
{
    m_controller.delegate().addNewQueryTabWithLoader(loader, entry.databaseConnectionDetails(),
                                                     Delegate::QueryTab::OpenAndExecute);
}

void DXDatabaseTreeContextHelper::sendScript(const DXDatabaseTreeEntry &entry,
                                             const std::shared_ptr<DXQueryLoader> &loader,
                                             Delegate::ScriptDestination destination)
{
    m_controller.delegate().sendScript(loader, entry.databaseConnectionDetails(), destination);
}

void DXDatabaseTreeContextHelper::openConnectionDialog(const DXDatabaseTreeEntry &entry)
{
    m_controller.delegate().openConnectionDialog(entry.databaseConnectionDetails());
}

void DXDatabaseTreeContextHelper::disconnect(const DXDatabaseTreeEntry &entry)
{
    m_controller.delegate().disconnectFrom(entry.databaseConnectionDetails());
}

bool DXDatabaseTreeContextHelper::canImportInto(const DXDatabaseTreeEntry &entry) const
{
    const auto details = entry.databaseConnectionDetails();
    return details && details->createDatabaseImportHelper();
}

void DXDatabaseTreeContextHelper::importInto(const DXDatabaseTreeEntry &entry)
{
    m_controller.delegate().importInto(entry.databaseConnectionDetails());
}

void DXDatabaseTreeContextHelper::exportTableAsCSV(const DXDatabaseTreeEntry &entry,
                                                   const QString &tablePath)
{
    m_controller.delegate().exportTableAsCSV(tablePath, entry.databaseConnectionDetails());
}

void DXDatabaseTreeContextHelper::newStoredProcedure() { }

void DXDatabaseTreeContextHelper::beep()
{
    m_controller.delegate().beep();
}
