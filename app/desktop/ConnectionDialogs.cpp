// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/ConnectionDialogs.h"

#include "client/DabroDBC.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "client/SQLRecentConnection.h"
#include "client/SQLRecentConnectionList.h"
#include "desktop/Connections.h"
#include "ui/connection/DXConnectionAttempt.h"
#include "ui/connection/DXConnectionDialog.h"
#include "ui/connection/DXConnectionWindowController.h"

#include <QPointer>

ConnectionDialogs::ConnectionDialogs(const Connections &connections, QWidget &window)
    : QObject(&window)
    , m_connections(connections)
    , m_window(window)
{ }

ConnectionDialogs::~ConnectionDialogs() = default;

void ConnectionDialogs::create()
{
    if (const auto details = m_connections.createDetails())
        edit(*details);
    else
        Q_EMIT failed(QStringLiteral("driver"), tr("There is no driver to connect with."), {});
}

void ConnectionDialogs::edit(const DabroDBC &details)
{
    if (const auto dialog = controller(details))
        dialog->open(&m_window);
}

// The one that is open stays: what stands in its fields was typed by somebody.
std::shared_ptr<DXConnectionWindowController> ConnectionDialogs::controller(const DabroDBC &details)
{
    if (m_controller && m_controller->dialog())
        return m_controller;
    m_controller = details.createConnectionWindowController();
    if (!m_controller)
        return m_controller;
    using Controller = DXConnectionWindowController;
    connect(m_controller.get(), &Controller::connected, this, &ConnectionDialogs::connected);
    connect(m_controller.get(), &Controller::notSaved, this, &ConnectionDialogs::tellUnsaved);
    return m_controller;
}

void ConnectionDialogs::tellUnsaved(const DXError &error)
{
    Q_EMIT failed(QStringLiteral("saved connections"),
                  tr("The list of connections could not be saved."), error.description().trimmed());
}

void ConnectionDialogs::connectTo(const std::shared_ptr<SQLRecentConnection> &record)
{
    const auto details = record->createDatabaseConnectionDetails();
    if (const Connections::Connection *const open = m_connections.find(*details)) {
        // The record need not remember the password that the open one was given.
        const auto asOpen = details->copy();
        if (asOpen->password().isEmpty())
            asOpen->setPassword(open->details->password());
        if (asOpen->sessionKey() == open->details->sessionKey()) {
            Q_EMIT connected(asOpen);
            return;
        }
    }
    Q_EMIT announced(tr("Connecting to %1.").arg(Connections::title(*details)));
    m_attempt = std::make_unique<DXConnectionAttempt>(
        *details, [this, record, details](const DXConnectionAttempt::Result &result) {
            Q_EMIT announced(QString());
            if (!result.client) {
                const auto dialog = controller(*details);
                if (!dialog
                    || !dialog->openAfterFailure(&m_window, details->connectionId(), result))
                    Q_EMIT failed(details->connectionId(),
                                  tr("Could not connect to %1.").arg(Connections::title(*details)),
                                  result.error.description().trimmed());
                return;
            }
            DabroDatabaseConnectionPool::adopt(result.client);
            details->recentConnectionClass()->updateRecentConnection(
                record, [self = QPointer(this)](const DXError &error) {
                    if (self && error)
                        self->tellUnsaved(error);
                });
            Q_EMIT connected(details);
        });
}
