// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class DXSQLEditor;

/// Gives an editor its commands as actions, each with a name ("editor.comment", …), a text for
/// menus and a key that works while the editor has the focus. [main]
namespace DXSQLEditorActions
{

void addTo(DXSQLEditor &editor);
/// Takes the letters with Ctrl away from Scintilla, which binds them to commands of its own and
/// would keep them from the window; cut, copy, paste, select all, undo and redo stay.
void freeKeys(DXSQLEditor &editor);

} // namespace DXSQLEditorActions
