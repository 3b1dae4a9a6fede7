// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QWidget>

#include <memory>

class Connections;
class DXQueryTab;
class DabroDBC;
class QMenu;
class QToolButton;
class SQLRecentConnection;

/// Which connection and which database a query tab talks to, for the toolbar. [main]
class TargetChooser final : public QWidget
{
    Q_OBJECT

public:
    explicit TargetChooser(const Connections &connections, QWidget *parent = nullptr);

    /// Null for none.
    void follow(DXQueryTab *tab);

Q_SIGNALS:
    void newConnectionRequested();
    /// The tab talks to another database.
    void changed();
    /// Why it does not, for the user.
    void refused(const QString &message);
    /// A saved connection that is not open yet is to be opened.
    void connectionRequested(const std::shared_ptr<SQLRecentConnection> &record);

private:
    void update();
    void fillConnections();
    void fillDatabases();
    void fillSaved(QMenu &menu);
    void use(const std::shared_ptr<DabroDBC> &details);

    const Connections &m_connections;
    QPointer<DXQueryTab> m_tab;
    QToolButton *const m_connection;
    QToolButton *const m_database;
};
