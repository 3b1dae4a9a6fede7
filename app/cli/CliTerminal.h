// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

/// The terminal that the program was started from, if any.
namespace CliTerminal
{

/// Whether standard input is a terminal, so that somebody may type there. [any]
bool isInputTerminal();
/// Asks on the controlling terminal, whatever standard input and output are, and reads a line
/// without showing it. Nothing when there is no terminal or its user ended the input. Waits without
/// limit. [main]
std::optional<QString> askPassword(const QString &prompt);
/// Shows again what is typed, if askPassword() is hiding it. May be called from a signal handler.
void restore();

} // namespace CliTerminal
