// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Program.h"

#include <optional>
#include <sys/types.h>

/// The programs of the installed PostgreSQL server, and the user to run them as. [any]
namespace ServerPrograms
{

/// The folder of initdb and pg_ctl: DX_PG_BINDIR of the environment, which lets the tests run
/// against another major version, else what pg_config tells, else the newest that Debian's
/// packages installed. Null when there is none.
QString folder();
/// The psql program: the server's, else the one on the path. Null when there is none.
QString psql();
/// What the server calls itself, such as "pg_ctl (PostgreSQL) 15.4".
QString version();

struct User
{
    uid_t user;
    gid_t group;
};
/// The user that servers run as, when it is not ourselves: they refuse to run as root.
std::optional<User> otherUser();

/// How to run a program of folder() as the server's user.
Program::Init asServerUser(const QString &program, const QStringList &arguments);
/// Hands a file to the server's user.
bool giveToServerUser(const QString &file);
/// Our environment without what directs libpq (PGHOST and the like).
QProcessEnvironment environment();

} // namespace ServerPrograms
