// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QStringList>

/// Orders names as people read them in the user's language. [any]
namespace DXCollation
{

/// Sorts by localized, case-insensitive comparison; equal names keep their order. Each name's sort
/// key is made once. In the C and POSIX locales the English rules are used: QCollator would
/// otherwise fall back to code points there and its sort keys forget that case is ignored.
DXSHARED_EXPORT QStringList sorted(const QStringList &names);

/// The order in which names read, as indexes into names: for sorting other things by their names.
DXSHARED_EXPORT QList<qsizetype> sortedIndexes(const QStringList &names);

/// The place of each name in that order, for sorting by more than the name: names that compare
/// equal share theirs.
DXSHARED_EXPORT QList<qsizetype> ranks(const QStringList &names);

} // namespace DXCollation
