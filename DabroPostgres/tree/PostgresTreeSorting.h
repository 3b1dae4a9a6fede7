// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeEntry.h"

/// The order of the nodes below a section. [any]
namespace PostgresTreeSorting
{

/// Tables, views and materialized views: first those of the default schema, then the others by
/// schema as people read it, and by name within a schema, capitals first.
DXDatabaseTreeEntry::List tables(DXDatabaseTreeEntry::List entries);

} // namespace PostgresTreeSorting
