// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

/// The program's arguments.
namespace CliArguments
{

/// Takes the arguments behind the program's name out of argv. A connection's URI or string that
/// holds a password is cut off in argv's own memory, where other users of the machine can read it
/// (proc(5), /proc/pid/cmdline), from the password on. Which arguments can be one: only URIs and
/// those behind "--url", or any, for a program whose arguments are nothing else. [main]
enum class Connections { Marked, Any };
QStringList take(int argc, char **argv, Connections connections = Connections::Marked);

/// Whether an argument is a URI, as a connection is given: "scheme://…". [any]
bool isUri(const QString &argument);

} // namespace CliArguments
