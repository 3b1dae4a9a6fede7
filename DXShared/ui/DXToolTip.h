// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QString>

/// Tooltips of texts that others wrote. [any]
namespace DXToolTip
{

/// A tooltip that shows text as it stands, whatever looks like markup in it included: Qt guesses
/// which tooltips are markup, and wraps only those. Wrapped, and cut after 2,000 characters. Null
/// for an empty text, which has no tooltip.
DXSHARED_EXPORT QString plain(const QString &text);

} // namespace DXToolTip
