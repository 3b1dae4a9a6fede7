// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/objects/PostgresTreeEntryTableIndex.h"

#include "tree/PostgresTreeMenu.h"
#include "tree/PostgresTreeText.h"

PostgresTreeEntryTableIndex::PostgresTreeEntryTableIndex(const Init &init)
    : m_init(init)
{
    setDisplayName(init.indexName);
}

QString PostgresTreeEntryTableIndex::imageName() const
{
    return QStringLiteral("DatabaseTree-Index");
}

DXMenu PostgresTreeEntryTableIndex::menu()
{
    return PostgresTreeMenu(*this)
        .drop(PostgresTreeText::tr("Drop index"), &PostgresDatabaseTreeActions::confirmDropIndex)
        .menu();
}
