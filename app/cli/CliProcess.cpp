// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliProcess.h"

#include <cstdlib>
#include <sys/prctl.h>

void CliProcess::prepare(const char *name)
{
    constexpr int keep = 0;
    ::setenv("PGAPPNAME", name, keep);
    ::setenv("PGCONNECT_TIMEOUT", "15", keep);
    ::unsetenv("PGCLIENTENCODING");
// The leak checker attaches to its own process.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    ::prctl(PR_SET_DUMPABLE, 0);
#endif
}
