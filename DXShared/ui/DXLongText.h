// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QString>
#include <QTextOption>

class QPlainTextEdit;

/// What keeps QPlainTextEdit quick with texts of any length: it lays out a line as a whole, and
/// looking for word boundaries takes it time that grows with the square of a run without blanks
/// (26 s for 400,000 hexadecimal digits). [any]
namespace DXLongText
{

/// Wraps at words, unless a run without blanks is too long to be searched for any.
DXSHARED_EXPORT QTextOption::WrapMode wrapMode(QStringView text);

/// The beginning of text that is laid out within a fraction of a second: all of it up to 262,144
/// characters, or up to 4,194,304 where no line of those is longer than 16,384.
DXSHARED_EXPORT QString shownPart(const QString &text);

/// Shows shownPart() of text in editor, wrapped in its way. [main]
DXSHARED_EXPORT void show(QPlainTextEdit &editor, const QString &text);

} // namespace DXLongText
