// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXTextRange.h"

#include <QList>
#include <QString>

/// Shows where in a text something failed. [any]
namespace CliErrorMark
{

/// The lines of text that hold the ranges, each with its number in front and carets under what
/// failed; nothing when the ranges are not in the text. A range of no length gets one caret, one
/// over many lines is shown in the first. A long line is cut around the mark. Ends without a line
/// break.
QString render(const QString &text, const QList<DXTextRange> &ranges);

} // namespace CliErrorMark
