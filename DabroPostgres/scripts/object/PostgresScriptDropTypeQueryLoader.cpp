// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/object/PostgresScriptDropTypeQueryLoader.h"

#include "scripts/PostgresScriptText.h"

PostgresScriptDropTypeQueryLoader::PostgresScriptDropTypeQueryLoader(const Init &init)
    : m_typeName(init.typeName)
    , m_schema(init.schema)
{ }

QString PostgresScriptDropTypeQueryLoader::script(const DabroDBC &details) const
{
    Q_UNUSED(details)
    return QStringLiteral("DROP TYPE %1")
        .arg(PostgresScriptText::escapedPath(m_schema, m_typeName));
}
