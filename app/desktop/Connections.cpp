// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/Connections.h"

#include "client/DXDBCTabColorHelper.h"
#include "client/DabroDBC.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "client/SQLRecentConnection.h"
#include "client/SQLRecentConnectionList.h"
#include "core/DXLogHelper.h"
#include "dispatch/DXDispatch.h"
#include "plugin/DXDriverPlugin.h"
#include "tree/DXDatabaseTreeContextHelper.h"
#include "tree/DatabaseTreeEntryServerRoot.h"
#include "ui/tree/DXDatabaseTreeView.h"

#include <algorithm>
#include <typeinfo>

namespace
{

// Each database of a tree has connections of its own. Closing says farewell to the server, which
// may not listen.
void closePooled(const Connections::Connection &connection)
{
    QList<std::shared_ptr<DabroDBC>> all{connection.details, connection.details->copy()};
    all.last()->setDatabase({});
    const auto databases = connection.root ? connection.root->childEntries() : nullptr;
    if (databases) {
        for (const auto &database : *databases)
            all.append(database->databaseConnectionDetails());
    }
    DXDispatch::background([all] {
        for (const auto &details : all)
            DabroDatabaseConnectionPool::disconnectAll(*details);
    });
}

// Whether a tree that was loaded with one is right for the other: a saved connection may have been
// edited since.
bool isUnchanged(const DabroDBC &one, const DabroDBC &other)
{
    return one.connectionId().isEmpty()
           || (one.sessionKey() == other.sessionKey() && one.alias() == other.alias());
}

} // namespace

QString Connections::title(const DabroDBC &details)
{
    if (!details.alias().isEmpty())
        return details.alias();
    const QString host = details.host().isEmpty() ? tr("local") : details.host();
    return details.username().isEmpty() ? host : details.username() + u'@' + host;
}

bool Connections::isSameServer(const DabroDBC &one, const DabroDBC &other)
{
    if (!one.connectionId().isEmpty() || !other.connectionId().isEmpty())
        return one.connectionId() == other.connectionId();
    return one.host() == other.host() && one.port() == other.port()
           && one.username() == other.username();
}

QString Connections::color(const DabroDBC &details)
{
    return DXDBCTabColorHelper::sharedInstance().colorForId(details.connectionId());
}

Connections::Connections(QObject *parent)
    : QObject(parent)
{ }

Connections::~Connections() = default;

void Connections::loadDrivers()
{
    if (std::exchange(m_isLoaded, true))
        return;
    m_drivers = DXDriverLoader::load(DXDriverLoader::searchPath());
    if (!m_drivers.refusals.isEmpty())
        DXLog(refusals());
}

QString Connections::product(const DabroDBC &details) const
{
    for (const DXDriverLoader::Driver &driver : m_drivers.drivers) {
        const auto own = driver.plugin->createConnectionDetails();
        if (typeid(*own) == typeid(details))
            return driver.metadata.displayName;
    }
    return {};
}

QString Connections::refusals() const
{
    QStringList lines;
    for (const DXDriverLoader::Refusal &refusal : m_drivers.refusals)
        lines += refusal.path + QStringLiteral(": ") + refusal.reason;
    return lines.join(u'\n');
}

std::shared_ptr<DabroDBC> Connections::createDetails() const
{
    return hasDriver() ? m_drivers.drivers.constFirst().plugin->createConnectionDetails() : nullptr;
}

std::shared_ptr<DabroDBC> Connections::detailsFromText(const QString &text, DXError *error) const
{
    if (!hasDriver()) {
        DXError::report(error, DXError(QString(), 0,
                                       tr("No driver could be loaded from %1.")
                                           .arg(DXDriverLoader::searchPath().join(u", "))));
        return {};
    }
    const QString scheme = text.section(QStringLiteral("://"), 0, 0);
    const DXDriverLoader::Driver *driver = m_drivers.driverForScheme(scheme);
    if (!driver)
        driver = &m_drivers.drivers.constFirst();
    return driver->plugin->connectionDetailsFromString(text, error);
}

QList<SQLRecentConnectionList *> Connections::savedConnections() const
{
    QList<SQLRecentConnectionList *> lists;
    for (const DXDriverLoader::Driver &driver : m_drivers.drivers) {
        if (auto *const list = driver.plugin->createConnectionDetails()->recentConnectionClass())
            lists.append(list);
    }
    return lists;
}

std::shared_ptr<DabroDBC> Connections::savedDetails(const QString &connectionId) const
{
    for (const SQLRecentConnectionList *const list : savedConnections()) {
        for (const auto &record : list->recentConnections()) {
            if (record->connectionId().compare(connectionId, Qt::CaseInsensitive) == 0)
                return record->createDatabaseConnectionDetails();
        }
    }
    return {};
}

const Connections::Connection *Connections::find(const DabroDBC &details) const
{
    const auto found = std::ranges::find_if(m_open, [&details](const Connection &connection) {
        return isSameServer(*connection.details, details);
    });
    return found == m_open.cend() ? nullptr : &*found;
}

void Connections::open(const std::shared_ptr<DabroDBC> &details, DXDatabaseTreeView &view)
{
    if (const Connection *const found = find(*details)) {
        if (isUnchanged(*found->details, *details))
            return;
        close(*found->details, view);
    }
    DXDBCTabColorHelper::sharedInstance().setColorFromAliasTemporaryForId(details->alias(),
                                                                          details->connectionId());
    Connection connection{.details = details,
                          .root = details->createRootDatabaseTreeNode(),
                          .helper = details->createDatabaseTreeContextHelper(view)};
    if (!connection.helper)
        connection.helper = std::make_shared<DXDatabaseTreeContextHelper>(view);
    m_open.append(connection);
    if (connection.root) {
        connection.root->setContextHelper(connection.helper);
        connection.root->setDatabaseConnectionDetails(details);
        view.addRoot(connection.root);
    }
    Q_EMIT changed();
}

void Connections::close(const DabroDBC &details, DXDatabaseTreeView &view)
{
    const Connection *const found = find(details);
    if (!found)
        return;
    const Connection connection = *found;
    m_open.removeAt(found - m_open.constData());
    if (connection.root)
        view.removeRoot(connection.root);
    closePooled(connection);
    Q_EMIT changed();
}
