// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliDrivers.h"

#include <algorithm>

namespace
{

const DXDriverLoader::Driver *named(const DXDriverLoader::Report &report, const QString &name)
{
    const auto found = std::ranges::find_if(report.drivers, [&name](const auto &driver) {
        return driver.metadata.identifier.compare(name, Qt::CaseInsensitive) == 0
               || driver.metadata.displayName.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == report.drivers.cend() ? nullptr : &*found;
}

QString reasonOf(const DXDriverLoader::Report &report, const QString &name, const QString &scheme)
{
    QString reason = QStringLiteral("No driver could be loaded.");
    if (!name.isEmpty())
        reason = QStringLiteral("There is no driver \"%1\".").arg(name);
    else if (!scheme.isEmpty() && !report.drivers.isEmpty())
        reason = QStringLiteral("There is no driver for \"%1\" connections.").arg(scheme);
    for (const DXDriverLoader::Driver &driver : report.drivers)
        reason += QStringLiteral("\nThere is %1, for %2.")
                      .arg(driver.metadata.displayName,
                           driver.metadata.schemes.join(QLatin1String(", ")));
    for (const DXDriverLoader::Refusal &refusal : report.refusals)
        reason += QStringLiteral("\n%1: %2").arg(refusal.path, refusal.reason);
    if (report.drivers.isEmpty() && report.refusals.isEmpty())
        reason += QStringLiteral(" None is in %1.")
                      .arg(DXDriverLoader::searchPath().join(QLatin1String(", ")));
    return reason;
}

} // namespace

const DXDriverLoader::Driver *CliDrivers::choose(const DXDriverLoader::Report &report,
                                                 const QString &name, const QString &scheme,
                                                 QString &reason)
{
    const DXDriverLoader::Driver *driver = nullptr;
    if (!name.isEmpty())
        driver = named(report, name);
    else if (!scheme.isEmpty())
        driver = report.driverForScheme(scheme);
    else if (!report.drivers.isEmpty())
        driver = &report.drivers.constFirst();
    if (!driver)
        reason = reasonOf(report, name, scheme);
    return driver;
}
