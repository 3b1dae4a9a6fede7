// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "connection/PostgresConnectionWindowController.h"
#include "driver/PostgresDatabaseConnectionDetails.h"
#include "driver/PostgresRecentConnection.h"
#include "support/PostgresCluster.h"
#include "support/SavedConnections.h"
#include "support/Widgets.h"
#include "ui/connection/DXConnectionDialog.h"

#include <QTemporaryDir>

#include <memory>

class QTcpServer;

/// The connection dialog on a window and a secret store of its own, and a server that listens on
/// 127.0.0.1 and lets "clerk" in with the password "tea & biscuits". [main]
class ConnectionDialog : public testing::Test
{
public:
    ~ConnectionDialog() override;

protected:
    ConnectionDialog();

    static PostgresCluster &cluster();
    static QString password() { return QStringLiteral("tea & biscuits"); }
    /// The address of the server, without a password.
    static QString uri();

    /// Opens the dialog for a new connection, or for a saved one.
    QDialog *open(const std::shared_ptr<SQLRecentConnection> &record = {});
    /// Opens it for a new connection with the server's address.
    void openOnAddress();
    /// Opens it for a new connection and lets it connect to server, which listens from now on.
    void openAndConnectTo(QTcpServer &server);
    QDialog *dialog() const;
    /// Pastes text as from the desktop's clipboard.
    void paste(const QString &field, const QString &text) const;
    QString field(const QString &name) const;
    /// What the dialog says, once it says something that is not "Connecting".
    QString message() const;
    /// A new list that reads what the dialog stored.
    QList<SQLRecentConnectionList::Record> stored();
    /// The text of a query's only cell, run with what was connected.
    QString scalar(const QString &query) const;

    QTemporaryDir m_folder;
    DXSecretStore &m_store;
    SQLRecentConnectionList &m_list;
    QWidget m_window;
    std::shared_ptr<PostgresConnectionWindowController> m_controller;
    std::shared_ptr<DabroDBC> m_connected;
};
