// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeEntry.h"

#include <QStringList>

/// The node of a server, the root of a connection's tree.
class DXSHARED_EXPORT DatabaseTreeEntryServerRoot : public DXDatabaseTreeEntry
{
public:
    ~DatabaseTreeEntryServerRoot() override;

    /// The names of the server's databases, sorted for reading; empty before the first load. [any]
    virtual QStringList allDatabaseNames() const = 0;
    /// The line that tells the server's version, or how far asking for it has come. [any]
    virtual QString serverVersion() const = 0;
};
