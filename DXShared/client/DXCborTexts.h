// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QCborMap>
#include <QMap>
#include <QString>

/// Texts by name, as archives hold them. [any]
namespace DXCborTexts
{

DXSHARED_EXPORT QCborMap encode(const QMap<QString, QString> &texts);
/// What encode() wrote; entries that are no text are left out.
DXSHARED_EXPORT QMap<QString, QString> decode(const QCborMap &map);

} // namespace DXCborTexts
