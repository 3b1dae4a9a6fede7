// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QColor>
#include <QPalette>

/// The program's colours, one set for light desktops and one for dark ones. Text on the surfaces
/// has a contrast of at least 4.5 : 1. [main]
struct DXSHARED_EXPORT DXTheme
{
    enum class Appearance { Light, Dark };

    QColor window;
    QColor sidebar;
    /// Behind data: grids and editors, the brightest (darkest) of all.
    QColor surface;
    QColor border;
    QColor alternateRow;
    QColor selection;
    QColor text;
    QColor secondaryText;
    /// Of NULL, which is also italic.
    QColor null;
    QColor accent;
    QColor danger;
    QColor warning;
    QColor success;

    static const DXTheme &of(Appearance appearance);
    /// The set that palette belongs to.
    static const DXTheme &of(const QPalette &palette);
    /// The palette that makes Qt's own widgets agree with the set.
    QPalette palette() const;
};
