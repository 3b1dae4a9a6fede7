// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// What --help prints. [any]
namespace CliHelp
{

/// The help of a command, such as "query"; the program's for any other topic.
QString text(const QString &topic);

} // namespace CliHelp
