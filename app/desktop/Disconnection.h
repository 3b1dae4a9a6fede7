// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QStringList>

#include <memory>

class Connections;
class DXDatabaseTreeView;
class DXQueryTab;
class DabroDBC;
class Documents;
class QWidget;

/// Leaves servers: the tree, what its loads kept open, and the sessions of the query tabs, whose
/// texts stay and connect anew when they are run. [main]
class Disconnection final : public QObject
{
    Q_OBJECT

public:
    struct Init
    {
        Connections &connections;
        Documents &documents;
        DXDatabaseTreeView &tree;
    };
    Disconnection(const Init &init, QWidget &window);

    /// Leaves the server of details, once the user agrees where a transaction or a statement is
    /// lost by it.
    void request(const std::shared_ptr<DabroDBC> &details);

private:
    QList<DXQueryTab *> tabsOf(const DabroDBC &details) const;
    QStringList losses(const DabroDBC &details) const;
    void leave(const DabroDBC &details);

    const Init m_init;
    QWidget &m_window;
};
