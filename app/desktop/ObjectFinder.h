// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "desktop/Chooser.h"
#include "tree/DXDatabaseTreeEntry.h"

#include <QPalette>

/// Finds objects of the open catalogues by name, for going to them. [main]
namespace ObjectFinder
{

/// What the trees' searches find, looked for in the background; choosing an object does what a
/// double click on it does.
Chooser::Source source(const DXDatabaseTreeEntry::List &roots, const QPalette &palette);

} // namespace ObjectFinder
