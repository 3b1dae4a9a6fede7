// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/objects/PostgresDatabaseTreeEntryOnlyChild.h"

PostgresDatabaseTreeEntryOnlyChild::~PostgresDatabaseTreeEntryOnlyChild() = default;

std::shared_ptr<const DXDatabaseTreeEntry::List>
PostgresDatabaseTreeEntryOnlyChild::childEntries() const
{
    if (!canHaveChildren())
        return {};
    std::call_once(m_once, [this] {
        const auto child = makeChild();
        child->setParent(std::const_pointer_cast<DXDatabaseTreeEntry>(shared_from_this()));
        child->setDelegate(delegate());
        child->setDatabaseConnectionDetails(databaseConnectionDetails());
        m_onlyChild = std::make_shared<const List>(List{child});
    });
    return m_onlyChild;
}
