// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgresPlugin.h"

#include "driver/PostgresDatabaseConnectionDetails.h"
#include "driver/connecting/PostgresConnectionStringReader.h"

#include <exception>

const double DabroPostgresVersionNumber = 1.0;
const char DabroPostgresVersionString[] = "@(#)PROGRAM:DabroPostgres  PROJECT:DabroPostgres-1\n";

namespace
{

/// Runs work; nothing, with error set, when it throws: the host knows no exceptions of a driver.
template<class Work>
std::shared_ptr<DabroDBC> guarded(Work work, DXError *error)
{
    try {
        return work();
    } catch (const std::exception &exception) {
        DXError::report(error, DXError(QStringLiteral("postgres.plugin"), 0,
                                       QString::fromLocal8Bit(exception.what())));
    }
    return nullptr;
}

} // namespace

std::shared_ptr<DabroDBC> DabroPostgresPlugin::createConnectionDetails() const
{
    return guarded(
        [] {
            auto details = std::make_shared<PostgresDatabaseConnectionDetails>();
            details->setPort(PostgresDatabaseConnectionDetails::defaultPort);
            return details;
        },
        nullptr);
}

std::shared_ptr<DabroDBC> DabroPostgresPlugin::connectionDetailsFromString(const QString &text,
                                                                           DXError *error) const
{
    return guarded([&] { return PostgresConnectionStringReader::read(text, error); }, error);
}
