// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeViewController.h"

#include <functional>

class Connections;
class DXDatabaseTreeView;
class DXFailureList;
class Documents;
class StatusLine;
class TableExports;

/// What the trees' menus and keys ask of their window. [main]
class TreeCommands final : public DXDatabaseTreeViewControllerDelegate
{
public:
    struct Init
    {
        Connections &connections;
        Documents &documents;
        TableExports &exports;
        StatusLine &status;
        /// Outlives the commands.
        DXFailureList &failures;
        /// Shows the dialog of a connection.
        std::function<void(const std::shared_ptr<DabroDBC> &details)> editConnection;
        /// Closes the connection's tree.
        std::function<void(const std::shared_ptr<DabroDBC> &details)> disconnect;
    };
    explicit TreeCommands(const Init &init);

    QWidget *targetWindow() override;
    void addNewQueryTab(const QString &query, const std::shared_ptr<DabroDBC> &details,
                        QueryTab mode) override;
    void addNewQueryTabWithLoader(const std::shared_ptr<DXQueryLoader> &loader,
                                  const std::shared_ptr<DabroDBC> &details, QueryTab mode) override;
    void sendScript(const std::shared_ptr<DXQueryLoader> &loader,
                    const std::shared_ptr<DabroDBC> &details,
                    ScriptDestination destination) override;
    void alterTableNamed(const QString &tableName, const QString &schema,
                         const std::shared_ptr<DabroDBC> &details) override;
    void openConnectionDialog(const std::shared_ptr<DabroDBC> &details) override;
    void disconnectFrom(const std::shared_ptr<DabroDBC> &details) override;
    void importInto(const std::shared_ptr<DabroDBC> &details) override;
    void exportTableAsCSV(const QString &tablePath,
                          const std::shared_ptr<DabroDBC> &details) override;
    void beep() override;

private:
    void saveScript(const QString &script);

    const Init m_init;
};
