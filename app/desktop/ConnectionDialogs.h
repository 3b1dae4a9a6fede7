// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <memory>

class Connections;
class DXConnectionAttempt;
class DXConnectionWindowController;
class DXError;
class DabroDBC;
class QWidget;
class SQLRecentConnection;

/// Makes connections: with the dialogs of the drivers, or at once from a saved record. [main]
class ConnectionDialogs final : public QObject
{
    Q_OBJECT

public:
    ConnectionDialogs(const Connections &connections, QWidget &window);
    ~ConnectionDialogs() override;

    /// Shows the dialog of a new connection.
    void create();
    /// Shows the dialog of a connection.
    void edit(const DabroDBC &details);
    /// Connects with a saved record; when that fails its dialog tells why.
    void connectTo(const std::shared_ptr<SQLRecentConnection> &record);

Q_SIGNALS:
    void connected(const std::shared_ptr<DabroDBC> &details);
    /// What goes on, for the user.
    void announced(const QString &message);
    /// What could not be done; about names it.
    void failed(const QString &about, const QString &headline, const QString &details);

private:
    std::shared_ptr<DXConnectionWindowController> controller(const DabroDBC &details);
    void tellUnsaved(const DXError &error);

    const Connections &m_connections;
    QWidget &m_window;
    std::shared_ptr<DXConnectionWindowController> m_controller;
    std::unique_ptr<DXConnectionAttempt> m_attempt;
};
