// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "plugin/DXDriverMetadata.h"

#include <QList>
#include <QString>
#include <QStringList>

class DXDriverPlugin;

/// Finds the drivers and loads those that fit this host. What a plugin file says of itself is read
/// and compared before any of its code runs; a file that does not fit is told of and never keeps
/// the others from loading. [any]
class DXSHARED_EXPORT DXDriverLoader final
{
public:
    struct Driver
    {
        DXDriverMetadata metadata;
        QString path;
        /// Lives until the process ends.
        DXDriverPlugin *plugin = nullptr;
    };
    /// A file or folder that was passed over, and why, as one sentence for people.
    struct Refusal
    {
        QString path;
        QString reason;
    };
    struct Report
    {
        QList<Driver> drivers;
        QList<Refusal> refusals;

        /// The driver that opens connections of a URI scheme, in any case; null when none does.
        const Driver *driverForScheme(const QString &scheme) const;
    };

    /// Where drivers are looked for, in order: the folders of the environment variable
    /// DABRO_DRIVER_PATH (developers; absolute paths, separated by colons, not heeded in a program
    /// that runs with raised rights), then those that the build and the installation put beside the
    /// running program. The current folder is never among them. Needs the QCoreApplication.
    static QStringList searchPath();

    /// Loads from the folders in order, in each by file name. An identifier seen before is refused.
    /// A folder that does not exist is passed over silently; one that everybody may write to is
    /// refused, unless it was named in DABRO_DRIVER_PATH.
    static Report load(const QStringList &folders);

private:
    DXDriverLoader() = delete;
};
