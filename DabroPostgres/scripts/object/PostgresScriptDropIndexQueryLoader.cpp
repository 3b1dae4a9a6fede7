// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/object/PostgresScriptDropIndexQueryLoader.h"

#include "scripts/PostgresScriptText.h"

PostgresScriptDropIndexQueryLoader::PostgresScriptDropIndexQueryLoader(const Init &init)
    : PostgresScriptQueryLoader(Delivery::AtOnce)
    , m_indexName(init.indexName)
    , m_schema(init.schema)
{ }

QString PostgresScriptDropIndexQueryLoader::script(const DabroDBC &details) const
{
    Q_UNUSED(details)
    return QStringLiteral("DROP INDEX %1")
        .arg(PostgresScriptText::escapedPath(m_schema, m_indexName));
}
