// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// How the program ends, for scripts; told in its help and its manual page.
enum CliExitStatus : int {
    CliExitOk = 0,
    /// A statement or a part of the tree failed, or what it printed could not be written.
    CliExitStatementFailed = 1,
    CliExitUsage = 2,
    CliExitNotConnected = 3,
    CliExitNoDriver = 4,
    /// Plus the number of the signal that ended it, as shells count: 130 is Ctrl-C, 141 that
    /// whoever read the output went away.
    CliExitSignal = 128,
};
