// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "plugin/DXDriverPlugin.h"

#include <QObject>

/// What the host finds when it loads this driver. [any]
class DabroPostgresPlugin final : public QObject, public DXDriverPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID DXDriverPlugin_iid FILE "DabroPostgres.json")
    Q_INTERFACES(DXDriverPlugin)

public:
    std::shared_ptr<DabroDBC> createConnectionDetails() const override;
    std::shared_ptr<DabroDBC> connectionDetailsFromString(const QString &text,
                                                          DXError *error) const override;
};

/// The version of the driver, for whoever inspects the plugin file.
extern "C" {
Q_DECL_EXPORT extern const double DabroPostgresVersionNumber;
Q_DECL_EXPORT extern const char DabroPostgresVersionString[];
}
