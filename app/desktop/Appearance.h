// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class ActionSet;

/// Light or dark. [main]
namespace Appearance
{

enum class Mode {
    /// As the desktop has it.
    System,
    Light,
    Dark
};

/// Puts the colours of mode on all windows of the program, those to come included.
void apply(Mode mode);
/// Applies the mode that was chosen last, and from now on each one that the actions choose.
void restore(const ActionSet &actions);

} // namespace Appearance
