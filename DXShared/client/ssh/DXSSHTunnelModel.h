// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QCborMap>
#include <QString>

/// How to reach the server through SSH. Whatever is left empty comes from the user's own OpenSSH
/// configuration (ssh_config(5)), so that host may be an alias of it. A plain record.
struct DXSHARED_EXPORT DXSSHTunnelModel
{
    /// The SSH server's name, address or ssh_config alias.
    QString host = {};
    /// 0 for ssh's own choice.
    quint16 port = 0;
    QString username = {};
    /// Secure-path token of the private key; empty for the agent's and the configured ones.
    QString identityFile = {};
    /// An ssh_config to use in place of the user's; empty for the user's own.
    QString configurationFile = {};

    QCborMap encode() const;
    static DXSSHTunnelModel decode(const QCborMap &archive);

    friend bool operator==(const DXSSHTunnelModel &, const DXSSHTunnelModel &) = default;
};
