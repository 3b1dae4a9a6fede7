// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/PostgresDatabaseTreeActions.h"

PostgresDatabaseTreeActions::~PostgresDatabaseTreeActions() = default;

void PostgresDatabaseTreeActions::alterTable(const Entry &entry)
{
    Q_UNUSED(entry)
}

void PostgresDatabaseTreeActions::renameTable(const Entry &entry)
{
    Q_UNUSED(entry)
}

void PostgresDatabaseTreeActions::displayInsertDialog(const Entry &entry)
{
    Q_UNUSED(entry)
}

void PostgresDatabaseTreeActions::exportDatabaseAsSQLite(const Entry &entry)
{
    Q_UNUSED(entry)
}
