// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/editor/DXScintilla.h"

class DXSQLStyler;
struct DXTheme;

/// The margin in which what spans several lines is folded and unfolded; the styler says what does.
/// [main]
class DXSQLFolding final
{
public:
    DXSQLFolding(QsciScintillaBase &view, DXSQLStyler &styler);

    void applyTheme(const DXTheme &theme);
    /// Folds or unfolds what begins in line or, if nothing does, what encloses it.
    void toggle(int line);
    void foldAll();
    void unfoldAll();

private:
    Q_DISABLE_COPY_MOVE(DXSQLFolding)

    bool isHeader(int line) const;
    void setAll(int action);

    QsciScintillaBase &m_view;
    DXSQLStyler &m_styler;
};
