// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/objects/PostgresDatabaseTreeEntryTrigger.h"

#include "scripts/object/PostgresScriptAlterTriggerQueryLoader.h"
#include "tree/PostgresTreeMenu.h"
#include "tree/PostgresTreeText.h"
#include "tree/objects/PostgresDatabaseTreeEntryFunction.h"

PostgresDatabaseTreeEntryTrigger::PostgresDatabaseTreeEntryTrigger(const Init &init)
    : m_init(init)
{ }

QString PostgresDatabaseTreeEntryTrigger::imageName() const
{
    return QStringLiteral("DatabaseTree-Trigger");
}

DXMenu PostgresDatabaseTreeEntryTrigger::menu()
{
    DXMenu scripts(PostgresTreeText::tr("Script as"));
    scripts.addSubmenu(createScriptToOptionsMenu(
        PostgresTreeText::tr("ALTER to"),
        std::make_shared<PostgresScriptAlterTriggerQueryLoader>(
            PostgresScriptAlterTriggerQueryLoader::Init{.triggerName = m_init.triggerName,
                                                        .schema = m_init.schema,
                                                        .table = m_init.tableName})));
    return PostgresTreeMenu(*this, QStringLiteral("Test"))
        .newQuery()
        .separator()
        .submenu(scripts)
        .menu();
}

std::shared_ptr<DXDatabaseTreeEntry> PostgresDatabaseTreeEntryTrigger::makeChild() const
{
    // The definition says in which schema the function is, unless it goes without saying.
    return std::make_shared<PostgresDatabaseTreeEntryFunction>(
        PostgresDatabaseTreeEntryFunction::Init{.functionName = m_init.targetProcedure,
                                                .schema = m_init.schema,
                                                .defaultSchema = m_init.defaultSchema,
                                                .displaySchema = 0});
}
