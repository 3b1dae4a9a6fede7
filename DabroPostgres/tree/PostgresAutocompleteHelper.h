// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editing/DXAutocompleteHelper.h"
#include "tree/PostgresAutocompleteEntires.h"

#include <QHash>

#include <memory>
#include <mutex>

/// The names of all databases whose nodes were expanded. A load that fails leaves what was there,
/// is logged as an error for the user, and is announced as one that went well.
class PostgresAutocompleteHelper final
    : public DXAutocompleteHelper,
      public std::enable_shared_from_this<PostgresAutocompleteHelper>
{
public:
    PostgresAutocompleteHelper() = default;

    static const std::shared_ptr<PostgresAutocompleteHelper> &sharedInstance();

    void requestEntriesForDatabaseConnectionDetails(const DabroDBC &details,
                                                    Update update = Update::IfNeeded) override;
    Entries schemasForDatabaseConnectionDetails(const DabroDBC &details) const override;
    Entries tablesForDatabaseConnectionDetails(const DabroDBC &details) const override;
    Entries columnsForDatabaseConnectionDetails(const DabroDBC &details) const override;
    Entries columnsForDatabaseConnectionDetails(const DabroDBC &details,
                                                const QString &inTable) const override;
    Entries entriesForDatabaseConnectionDetails(const DabroDBC &details,
                                                const QString &withParent) const override;
    QStringList possibleNamesForAlias(const DabroDBC &details) const override;

private:
    struct Loaded
    {
        std::shared_ptr<const PostgresAutocompleteEntires> entries;
        // The load that was begun last; what an earlier one brings is out of date.
        quint64 lastLoad = 0;
        bool isLoading = false;
    };

    void doLoadAutocompleteDetails(const DabroDBC &details, quint64 load);
    void finishLoad(const QString &key, quint64 load,
                    const std::shared_ptr<const PostgresAutocompleteEntires> &entries);
    std::shared_ptr<const PostgresAutocompleteEntires> entriesFor(const DabroDBC &details) const;

    mutable std::mutex m_mutex;
    // By the description of the connection.
    QHash<QString, Loaded> m_autocompleteEntries;
};
