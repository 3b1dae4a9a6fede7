// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "core/DXGlobal.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

/// What a driver says of itself in its plugin file, readable without loading it. The keys of the
/// JSON object are the member names.
struct DXSHARED_EXPORT DXDriverMetadata
{
    /// The interface that this host and its drivers agree on; changes when the vtables do.
    static constexpr int hostInterfaceVersion = 1;

    /// Unique among drivers, such as "org.dabro.postgres".
    QString identifier;
    /// For people, such as "PostgreSQL".
    QString displayName;
    /// The driver's own version.
    QString version;
    /// The hostInterfaceVersion that it was built for.
    int interfaceVersion = 0;
    /// URI schemes of connections that it opens, such as "postgres".
    QStringList schemes;

    /// Reads the object; error tells which key is missing or of the wrong kind. *Result decides.*
    static std::optional<DXDriverMetadata> fromJson(const QJsonObject &object, DXError *error);
};
