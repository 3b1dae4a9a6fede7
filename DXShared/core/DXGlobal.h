// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/qglobal.h>

#include <QString>

#ifdef DXSHARED_LIBRARY
#define DXSHARED_EXPORT Q_DECL_EXPORT
#else
#define DXSHARED_EXPORT Q_DECL_IMPORT
#endif

/// What begins every notification name, queue label and error-detail key: the product's reverse-DNS
/// name with its final dot. The host and every driver share it, so a name that one posts is the
/// name that another listens for.
inline constexpr QStringView DXProductPrefix = u"org.dabro.";

/// The product prefix followed by tail, the fixed part of a notification name, label or key. [any]
inline QString DXProductName(QStringView tail)
{
    return DXProductPrefix.toString().append(tail);
}
