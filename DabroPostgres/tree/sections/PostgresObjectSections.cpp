// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/sections/PostgresObjectSections.h"

#include "tree/sections/PostgresDatabaseTreeEntrySectionSequence.h"
#include "tree/sections/PostgresDatabaseTreeEntrySectionStoredProcedures.h"
#include "tree/sections/PostgresDatabaseTreeEntrySectionTables.h"
#include "tree/sections/PostgresDatabaseTreeEntrySectionTypes.h"
#include "tree/sections/PostgresDatabaseTreeEntrySectionViews.h"

DXDatabaseTreeEntry::List PostgresObjectSections(const QString &parentSchema)
{
    auto materializedViews = std::make_shared<PostgresDatabaseTreeEntrySectionViews>(parentSchema);
    materializedViews->setMaterializedViews(true);
    return {std::make_shared<PostgresDatabaseTreeEntrySectionTables>(parentSchema),
            std::make_shared<PostgresDatabaseTreeEntrySectionViews>(parentSchema),
            materializedViews,
            std::make_shared<PostgresDatabaseTreeEntrySectionStoredProcedures>(parentSchema),
            std::make_shared<PostgresDatabaseTreeEntrySectionTypes>(parentSchema),
            std::make_shared<PostgresDatabaseTreeEntrySectionSequence>(parentSchema)};
}
