// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dispatch/DXDispatch.h"

/// Runs work and then destroys what it holds; an exception that escapes it ends here, as an error
/// in the log. [any]
void DXGuardedRun(DXDispatch::Work work) noexcept;
