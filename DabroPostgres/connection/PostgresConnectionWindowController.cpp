// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/PostgresConnectionWindowController.h"

#include "connection/PostgresConnectionForm.h"
#include "connection/PostgresConnectionFormController.h"
#include "driver/PostgresDatabaseConnectionDetails.h"
#include "driver/PostgresRecentConnection.h"

PostgresConnectionWindowController::PostgresConnectionWindowController(
    const std::shared_ptr<const PostgresDatabaseConnectionDetails> &details,
    SQLRecentConnectionList &list)
    : DXConnectionWindowController(list)
    , m_details(details)
{ }

QString PostgresConnectionWindowController::title() const
{
    return tr("Connect to PostgreSQL");
}

DXConnectionForm *PostgresConnectionWindowController::createForm()
{
    return new PostgresConnectionForm;
}

DXConnectionWindowController::Record PostgresConnectionWindowController::initialRecord() const
{
    const QString id = m_details->connectionId();
    const QList<Record> saved = list().recentConnections();
    for (const Record &record : saved) {
        if (!id.isEmpty() && record->connectionId().compare(id, Qt::CaseInsensitive) == 0)
            return record;
    }
    return PostgresConnectionFormController::recordOf(*m_details);
}

DXConnectionWindowController::Record PostgresConnectionWindowController::newRecord() const
{
    PostgresDatabaseConnectionDetails details;
    details.setPort(PostgresDatabaseConnectionDetails::defaultPort);
    return PostgresConnectionFormController::recordOf(details);
}
