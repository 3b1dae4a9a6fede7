// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

/// Text for a terminal, which may come from a server that nobody trusts. [any]
namespace CliText
{

/// The text on one line, with everything that does not print as itself escaped: control characters
/// (as \n, \t or \x1B), line separators, direction marks and other invisible ones (as \u202E),
/// halves of surrogate pairs. So no text can send the terminal a command or show what it is not.
QString printable(QStringView text);
/// The same for a text of several lines: line feeds stay, and tabs become blanks to the next
/// multiple of eight columns.
QString printableLines(QStringView text);
/// The columns that a printable text takes on a terminal, by wcwidth(3): wide characters take two,
/// combining ones none.
qsizetype width(QStringView printable);

} // namespace CliText
