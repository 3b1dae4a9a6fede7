// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "plugin/DXDriverLoader.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

class DXDatabaseTreeContextHelper;
class DXDatabaseTreeView;
class DabroDBC;
class DatabaseTreeEntryServerRoot;
class SQLRecentConnectionList;

/// The drivers, and the connections that a window has open, each with its tree. [main]
class Connections final : public QObject
{
    Q_OBJECT

public:
    struct Connection
    {
        std::shared_ptr<DabroDBC> details;
        std::shared_ptr<DatabaseTreeEntryServerRoot> root;
        std::shared_ptr<DXDatabaseTreeContextHelper> helper;
    };
    /// The user's name for a connection, else what it connects to.
    static QString title(const DabroDBC &details);
    /// Whether both are of one connection, and so share its tree, whatever their databases.
    static bool isSameServer(const DabroDBC &one, const DabroDBC &other);
    /// "#RRGGBB", or null.
    static QString color(const DabroDBC &details);

    explicit Connections(QObject *parent = nullptr);
    ~Connections() override;

    /// Loads the drivers, unless that is done; what was refused is logged.
    void loadDrivers();
    bool hasDriver() const { return !m_drivers.drivers.isEmpty(); }
    /// The drivers that were not loaded and why, a line each.
    QString refusals() const;
    /// The name of the servers that details connect to, such as "PostgreSQL".
    QString product(const DabroDBC &details) const;
    /// A record of the first driver, for a new connection or an editor without one; null when there
    /// is no driver.
    std::shared_ptr<DabroDBC> createDetails() const;
    /// The record that text, a URI or key/value string, describes; null, with error set, when no
    /// driver reads it.
    std::shared_ptr<DabroDBC> detailsFromText(const QString &text, DXError *error) const;
    /// The saved connections of every driver that keeps any.
    QList<SQLRecentConnectionList *> savedConnections() const;
    /// The record of a saved connection; null while it is not known.
    std::shared_ptr<DabroDBC> savedDetails(const QString &connectionId) const;

    const QList<Connection> &open() const { return m_open; }
    /// The open connection that details, of any of its databases, belong to; null for none.
    const Connection *find(const DabroDBC &details) const;
    /// Shows the tree of details in view, unless it is there already; that of a connection which
    /// was edited since is replaced.
    void open(const std::shared_ptr<DabroDBC> &details, DXDatabaseTreeView &view);
    /// Ends the tree of details, and what its loads keep connected.
    void close(const DabroDBC &details, DXDatabaseTreeView &view);

Q_SIGNALS:
    void changed();

private:
    DXDriverLoader::Report m_drivers;
    bool m_isLoaded = false;
    QList<Connection> m_open;
};
