// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/PostgresDatabaseTreeEntrySchema.h"

#include "tree/sections/PostgresObjectSections.h"

PostgresDatabaseTreeEntrySchema::PostgresDatabaseTreeEntrySchema(const QString &parentSchema)
    : m_schema(parentSchema)
{ }

QString PostgresDatabaseTreeEntrySchema::imageName() const
{
    return QStringLiteral("DatabaseTree-Schema");
}

bool PostgresDatabaseTreeEntrySchema::loadEntriesAsync(Reload reload)
{
    if (reload == Reload::IfNeeded && childEntries())
        return false;
    const List sections = PostgresObjectSections(m_schema);
    for (const auto &section : sections)
        adoptChild(*section);
    setChildEntries(sections);
    return false;
}
