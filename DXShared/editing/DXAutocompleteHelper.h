// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "editing/DXDatabaseAutocompleteEntry.h"

#include <QStringList>

#include <optional>

class DabroDBC;

/// Gives an editor the names that it completes, by connection; one of it serves all connections of
/// a driver. Everything is [any] and answers at once from what was loaded.
class DXSHARED_EXPORT DXAutocompleteHelper
{
public:
    enum class Update { IfNeeded, Force };

    /// Posted on the main thread when the names of a connection are there; the user information
    /// holds the connection's key, its description, under connectionKey().
    static QString AutoCompleteUpdatedNotificationName();
    static QString connectionKey();

    virtual ~DXAutocompleteHelper();

    /// Loads the names of the database that details describe in the background, unless they are
    /// there already and update does not force it; posts the notification in either case. Nothing
    /// happens for details that name no database; a failure is logged. The selector is
    /// `requestEntriesForDatabaseConnectionDetails:forceUpdate:`.
    virtual void requestEntriesForDatabaseConnectionDetails(const DabroDBC &details,
                                                            Update update = Update::IfNeeded) = 0;

    /// Nothing before the names are loaded.
    using Entries = std::optional<DXDatabaseAutocompleteEntry::List>;
    virtual Entries schemasForDatabaseConnectionDetails(const DabroDBC &details) const = 0;
    virtual Entries tablesForDatabaseConnectionDetails(const DabroDBC &details) const = 0;
    virtual Entries columnsForDatabaseConnectionDetails(const DabroDBC &details) const = 0;
    /// The columns of a table that is written as in a query, with or without schema and quotes.
    virtual Entries columnsForDatabaseConnectionDetails(const DabroDBC &details,
                                                        const QString &inTable) const = 0;
    /// What stands under a schema or table that is written as in a query.
    virtual Entries entriesForDatabaseConnectionDetails(const DabroDBC &details,
                                                        const QString &withParent) const = 0;
    /// The names that an alias in a query may stand for, sorted for reading.
    virtual QStringList possibleNamesForAlias(const DabroDBC &details) const = 0;

protected:
    DXAutocompleteHelper() = default;

private:
    Q_DISABLE_COPY_MOVE(DXAutocompleteHelper)
};
