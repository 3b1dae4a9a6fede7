// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeEntry.h"

/// Which nodes stand for one thing on a server: one below its section, one among what a search
/// found, one below the column that draws from the sequence. [main]
namespace PostgresTreeCounterparts
{

/// What stands for the same as entry, as far as the trees of roots are loaded; entry itself may be
/// among it.
DXDatabaseTreeEntry::List find(const DXDatabaseTreeEntry::List &roots,
                               const DXDatabaseTreeEntry &entry);

/// The nodes of the database that entry lies in, one a tree.
DXDatabaseTreeEntry::List databasesOf(const DXDatabaseTreeEntry::List &roots,
                                      const DXDatabaseTreeEntry &entry);

} // namespace PostgresTreeCounterparts
