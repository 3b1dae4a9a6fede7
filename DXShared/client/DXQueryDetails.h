// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXTextRange.h"

#include <QString>

/// One statement of an editor's text, as the splitter cut it.
struct DXQueryDetails
{
    /// The statement as it stands in the text, with the blanks and comments around it.
    QString targetQuery;
    /// Line feeds before it in the text.
    qsizetype lineNumberOffset = 0;
    /// Where it stands in the text.
    DXTextRange queryRange;
};
