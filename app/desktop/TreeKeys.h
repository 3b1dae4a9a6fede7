// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class ActionSet;
class DXDatabaseTreeView;
class StatusLine;

/// The window's commands that act on the trees at its side, and on what is selected there. [main]
namespace TreeKeys
{

/// All three outlive the window's actions.
void connect(const ActionSet &actions, DXDatabaseTreeView &tree, StatusLine &status);

} // namespace TreeKeys
