// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/sections/PostgresDatabaseTreeEntrySectionSchemas.h"

#include "tree/PostgresTreeText.h"

QString PostgresDatabaseTreeEntrySectionSchemas::displayName() const
{
    return PostgresTreeText::tr("Schemas");
}

QString PostgresDatabaseTreeEntrySectionSchemas::imageName() const
{
    return QStringLiteral("DatabaseTree-Folder");
}

bool PostgresDatabaseTreeEntrySectionSchemas::loadEntriesAsync(Reload reload)
{
    if (reload == Reload::IfNeeded && childEntries())
        return false;
    return !m_dataLoadSemaphore.tryWait();
}
