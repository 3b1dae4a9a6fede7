// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QIcon>
#include <QString>

class QPalette;

/// The program's own icons: drawings in two tones that take the colours of the theme. [main]
namespace DXIcon
{

/// The drawing called name in the colours that go with palette, sharp at every size and scale; a
/// null icon when there is none. Made once for each name and appearance.
DXSHARED_EXPORT QIcon named(const QString &name, const QPalette &palette);

} // namespace DXIcon
