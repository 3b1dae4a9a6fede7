// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editing/PostgresEnumTypeHelperDetails.h"

#include <QList>
#include <QString>

#include <memory>

class DabroDBC;

/// The enumeration types of every database that was looked at, for the whole process, by the
/// description of the connection. [any] unless said otherwise.
class PostgresEnumTypeHelper final
{
public:
    PostgresEnumTypeHelper() = delete;

    /// A list that never changes; a later load brings another one. Empty pointer: none was loaded.
    using EnumTypes = std::shared_ptr<const QList<PostgresEnumTypeHelperDetails>>;

    /// What was loaded last for these details; never asks the server.
    static EnumTypes enumTypesForDatabaseConnection(const DabroDBC &details);

    enum class RequiresUpdate { No, Yes };
    /// Loads in the background, unless there is a list and no update is required; of many requests
    /// two at a time for each server. Nothing when details name no database. The selector is
    /// `requestEnumTypesForDatabaseConnection:requiresUpdate:`.
    static void
    requestEnumTypesForDatabaseConnection(const DabroDBC &details,
                                          RequiresUpdate requiresUpdate = RequiresUpdate::No);

    /// Loads and stores. A failure is logged, as is a server before 8.3, which has no enumerations;
    /// either leaves what is stored. When the list differs from existingDetails, the notification
    /// is posted. The selector is `doGetEnumTypesForDatabaseConnection:existingDetails:`.
    /// [background]
    static void doGetEnumTypesForDatabaseConnection(const DabroDBC &details,
                                                    const EnumTypes &existingDetails);

    /// Posted on the main thread when a load found other types than were known, with the
    /// description of the connection under connectionKey().
    static QString PostgresEnumTypeHelperNotificationName();
    static QString connectionKey();

private:
    static void loadAndStore(const DabroDBC &details, const EnumTypes &existingDetails,
                             bool isPooled);
};
