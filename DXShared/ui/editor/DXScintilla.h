// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// QScintilla's headers use Qt's keywords, which we do without.
#define signals Q_SIGNALS
#define slots Q_SLOTS
#include <Qsci/qsciscintilla.h>
#undef signals
#undef slots
