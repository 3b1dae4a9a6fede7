// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/PostgresDatabaseTreeActions.h"

PostgresDatabaseTreeActions::~PostgresDatabaseTreeActions() = default;
