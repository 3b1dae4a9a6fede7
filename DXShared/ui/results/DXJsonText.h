// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QString>

/// JSON for reading. [any]
namespace DXJsonText
{

/// The text with each member and element in a line of its own; every name, number and string stays
/// as it is written, and so does the order. Null when the text is not a JSON object or array.
DXSHARED_EXPORT QString indented(const QString &text);

} // namespace DXJsonText
