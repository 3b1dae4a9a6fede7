// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QtPlugin>

#include <memory>

class DabroDBC;

/// What a driver's plugin file hands to the host: its connection record, from which everything else
/// comes. Loaded drivers stay loaded until the process ends. [any]
class DXSHARED_EXPORT DXDriverPlugin
{
public:
    virtual ~DXDriverPlugin();

    /// A new, empty connection record of this driver, with the driver's default port.
    virtual std::shared_ptr<DabroDBC> createConnectionDetails() const = 0;
    /// A record filled from a URI or a key/value string in the notation of the server's client
    /// library; nothing, with error set, when it cannot be read.
    virtual std::shared_ptr<DabroDBC> connectionDetailsFromString(const QString &text,
                                                                  class DXError *error) const = 0;
};

#define DXDriverPlugin_iid "org.dabro.DXDriverPlugin"
Q_DECLARE_INTERFACE(DXDriverPlugin, DXDriverPlugin_iid)
