// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/object/PostgresScriptDropSequenceQueryLoader.h"

#include "scripts/PostgresScriptText.h"

PostgresScriptDropSequenceQueryLoader::PostgresScriptDropSequenceQueryLoader(const Init &init)
    : PostgresScriptQueryLoader(Delivery::AtOnce)
    , m_sequenceName(init.sequenceName)
    , m_schema(init.schema)
{ }

QString PostgresScriptDropSequenceQueryLoader::script(const DabroDBC &details) const
{
    Q_UNUSED(details)
    return QStringLiteral("DROP SEQUENCE %1")
        .arg(PostgresScriptText::escapedPath(m_schema, m_sequenceName));
}
