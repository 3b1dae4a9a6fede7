// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "plugin/DXDriverLoader.h"

#include <QString>

/// Which driver serves a connection. [any]
namespace CliDrivers
{

/// The driver called name (its identifier or display name, in any case), else the one that opens
/// the scheme, else, when neither is given, the first. Null, with reason for the user, when there
/// is none.
const DXDriverLoader::Driver *choose(const DXDriverLoader::Report &report, const QString &name,
                                     const QString &scheme, QString &reason);

} // namespace CliDrivers
