// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

class DabroDBC;

/// Where statements come from. [any]
namespace CliStatementInput
{

/// The whole text of a file, "-" for standard input, as UTF-8 without a byte-order mark. Nothing,
/// with error saying why, when it cannot be read or is no text.
std::optional<QString> read(const QString &file, QString &error);

/// Whether text ends behind a statement's end: with a semicolon that is not part of a string,
/// comment, parenthesis or function body, and nothing but blanks and comments behind it.
bool isComplete(const QString &text, const DabroDBC &details);

} // namespace CliStatementInput
