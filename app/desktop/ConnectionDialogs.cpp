// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/ConnectionDialogs.h"

#include "client/DabroDBC.h"
#include "client/SQLRecentConnection.h"
#include "client/SQLRecentConnectionList.h"
#include "desktop/Connections.h"
#include "ui/connection/DXConnectionAttempt.h"
#include "ui/connection/DXConnectionDialog.h"
#include "ui/connection/DXConnectionWindowController.h"

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
    if (m_controller)
        connect(m_controller.get(), &DXConnectionWindowController::connected, this,
                &ConnectionDialogs::connected);
    return m_controller;
}

void ConnectionDialogs::connectTo(const std::shared_ptr<SQLRecentConnection> &record)
{
    const auto details = record->createDatabaseConnectionDetails();
    if (m_connections.find(*details)) {
        Q_EMIT connected(details);
        return;
    }
    Q_EMIT announced(tr("Connecting to %1.").arg(Connections::title(*details)));
    m_attempt = std::make_unique<DXConnectionAttempt>(
        *details, [this, record, details](const DXConnectionAttempt::Result &result) {
            Q_EMIT announced(QString());
            if (!result.client) {
                if (const auto dialog = controller(*details))
                    dialog->openAfterFailure(&m_window, result);
                return;
            }
            details->recentConnectionClass()->updateRecentConnection(
                record, [this, record](const DXError &error) {
                    if (error)
                        Q_EMIT failed(record->connectionId(),
                                      tr("The list of connections could not be saved."),
                                      error.description().trimmed());
                });
            Q_EMIT connected(details);
        });
}
