// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/object/PostgresScriptDropDatabaseQueryLoader.h"

#include "scripts/PostgresScriptText.h"

PostgresScriptDropDatabaseQueryLoader::PostgresScriptDropDatabaseQueryLoader(
    const QString &databaseName)
    : PostgresScriptQueryLoader(Delivery::AtOnce)
    , m_databaseName(databaseName)
{ }

QString PostgresScriptDropDatabaseQueryLoader::script(const DabroDBC &details) const
{
    Q_UNUSED(details)
    return PostgresScriptText::query(QStringLiteral("DropDatabase"),
                                     {{QLatin1String("{DATABASE}"), m_databaseName}})
        .text();
}
