// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/objects/PostgresDatabaseTreeEntrySequence.h"

#include "scripts/object/PostgresScriptAlterSequenceQueryLoader.h"
#include "tree/PostgresTreeMenu.h"
#include "tree/PostgresTreeNaming.h"
#include "tree/PostgresTreeText.h"

PostgresDatabaseTreeEntrySequence::PostgresDatabaseTreeEntrySequence(const Init &init)
    : m_sequenceName(init.sequenceName)
    , m_schema(init.schema)
    , m_shouldDisplaySchema(PostgresTreeNaming::shouldDisplaySchema(init.schema, init.defaultSchema,
                                                                    init.displaySchema))
{ }

std::shared_ptr<DXQueryLoader> PostgresDatabaseTreeEntrySequence::queryLoaderForAlter() const
{
    return std::make_shared<PostgresScriptAlterSequenceQueryLoader>(
        PostgresScriptAlterSequenceQueryLoader::Init{.sequenceName = m_sequenceName,
                                                     .schema = m_schema});
}

QString PostgresDatabaseTreeEntrySequence::displayName() const
{
    return PostgresTreeNaming::displayName(m_shouldDisplaySchema, m_schema, m_sequenceName);
}

QString PostgresDatabaseTreeEntrySequence::imageName() const
{
    return QStringLiteral("DatabaseTree-UserSequence");
}

DXMenu PostgresDatabaseTreeEntrySequence::menu()
{
    PostgresTreeMenu menu(*this);
    menu.newQuery().separator();
    menu.loaderTab(PostgresTreeText::tr("Alter sequence"), queryLoaderForAlter());
    if (m_canDrop)
        menu.drop(PostgresTreeText::tr("Drop sequence"),
                  &PostgresDatabaseTreeActions::confirmDropSequence);
    return menu.separator().refresh().menu();
}

void PostgresDatabaseTreeEntrySequence::cmdDown()
{
    if (const auto helper = contextHelper())
        helper->addQueryTabWithQueryLoader(*this, queryLoaderForAlter());
}
