// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QString>
#include <QUrl>

/// Turns the files that a user picked into tokens that are stored, and back. [any]
class DXSHARED_EXPORT DXSecurityBookmarkHelper final
{
public:
    static DXSecurityBookmarkHelper &sharedInstance();

    /// The token under which path is stored; survives moving the home folder. Null for an empty
    /// path.
    QString createSecurePath(const QString &path);
    /// Where the file of a token is; an empty location for an absent or unreadable token. A plain
    /// absolute path is taken as a token of itself. The file need not exist.
    QUrl loadSecurePath(const QString &token);

private:
    DXSecurityBookmarkHelper() = default;
    Q_DISABLE_COPY_MOVE(DXSecurityBookmarkHelper)
};
