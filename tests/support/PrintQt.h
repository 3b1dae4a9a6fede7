// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <ostream>

/// Lets a failed comparison show texts as texts. GoogleTest finds it by its name.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << (text.isNull() ? std::string("null text") : '"' + text.toStdString() + '"');
}
