// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dispatch/DXSemaphore.h"

#include <QHash>
#include <QString>

class DabroDBC;

/// Knows in which schema a user's unqualified names live, asking each server once.
class PostgresDefaultSchemaHelper final
{
public:
    static PostgresDefaultSchemaHelper &sharedInstance();

    /// The default schema of the login that connectionDetails describes, from the cache by its
    /// description or else from the server; "public" when the server names none or cannot be asked,
    /// which is then cached, too, and logged as an error. Look-ups wait for each other. The
    /// selector is `schemaForDBC:`. [background]
    QString schemaForDBC(const DabroDBC &connectionDetails);

private:
    PostgresDefaultSchemaHelper();
    Q_DISABLE_COPY_MOVE(PostgresDefaultSchemaHelper)

    DXSemaphore m_defaultSchemaSemaphore;
    QHash<QString, QString> m_lookup;
};
