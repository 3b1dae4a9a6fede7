// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// What a process that handles passwords sets up first.
namespace CliProcess
{

/// Gives the server's client library what it reads from the environment (name as ours, a limit for
/// connecting, no encoding but its caller's), and keeps our memory from core dumps and other
/// processes of the same user (prctl(2), PR_SET_DUMPABLE). Before any thread starts. [main]
void prepare(const char *name);

} // namespace CliProcess
