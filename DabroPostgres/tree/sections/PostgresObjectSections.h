// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeEntry.h"

/// New nodes for the six sections that a database or a schema holds, in their order; parentSchema
/// is null for the sections of a database. [any]
DXDatabaseTreeEntry::List PostgresObjectSections(const QString &parentSchema);
