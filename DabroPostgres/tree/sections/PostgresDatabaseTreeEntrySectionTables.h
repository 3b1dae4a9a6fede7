// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/sections/PostgresDatabaseTreeEntrySection.h"

struct DXDatabaseNotificationTable;

/// "Tables". It follows the tables that the program makes while it is open. Its load is
/// `loadTables:withError:`.
class PostgresDatabaseTreeEntrySectionTables final : public PostgresDatabaseTreeEntrySection
{
public:
    explicit PostgresDatabaseTreeEntrySectionTables(const QString &parentSchema);
    ~PostgresDatabaseTreeEntrySectionTables() override;

    /// Adds a node to those that are loaded, in its place; the schema is shown unless it is the
    /// default one. Nothing before the first load. [any]
    void addTable(const QString &tableName, const QString &tableSchema);
    /// As PostgresTreeSorting::tables(). [any]
    static List sortTables(List tables);

    QString displayName() const override;
    DXMenu menu() override;

protected:
    PostgresCatalogueQuery query(const QString &serverVersion) const override;
    QString errorDomain() const override;
    std::shared_ptr<DXDatabaseTreeEntry> makeEntry(const DatabaseResultSet &row,
                                                   const Naming &naming) const override;
    List sorted(List entries) const override { return sortTables(std::move(entries)); }
    bool sharesConnectionDetails() const override { return true; }

private:
    void tableWasAdded(const DXDatabaseNotificationTable &table);
    void tableWasRemoved(const DXDatabaseNotificationTable &table);
    void tellFinished();

    // Last, so that nobody calls while the rest goes.
    std::shared_ptr<void> m_added;
    std::shared_ptr<void> m_removed;
};
