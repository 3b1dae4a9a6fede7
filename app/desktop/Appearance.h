// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/DXTheme.h"

#include <QObject>

class ActionSet;
class DXDesktopColors;

/// Light or dark: what the user chose, or what the desktop has. [main]
class Appearance final : public QObject
{
    Q_OBJECT

public:
    /// Puts the colours that were chosen last on all windows of the program, those to come
    /// included, and from now on those that the actions choose.
    explicit Appearance(const ActionSet &actions, QObject *parent = nullptr);

    /// Follows what the desktop says, from now on; it is asked in the background.
    void followDesktop();

private:
    enum class Mode {
        /// As the desktop has it.
        System,
        Light,
        Dark
    };

    void setMode(Mode mode);
    void takeDesktops(DXTheme::Appearance appearance);

    DXDesktopColors *const m_desktop;
    DXTheme::Appearance m_desktops;
    Mode m_mode = Mode::System;
};
