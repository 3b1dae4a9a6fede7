// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/sections/PostgresDatabaseTreeEntrySection.h"

/// "Views" or "Materialized Views". Its load is `loadViews:error:` or
/// `loadMaterializedViews:error:`.
class PostgresDatabaseTreeEntrySectionViews final : public PostgresDatabaseTreeEntrySection
{
public:
    explicit PostgresDatabaseTreeEntrySectionViews(const QString &parentSchema);

    /// Set by whoever makes the node.
    bool materializedViews() const { return m_materializedViews; }
    void setMaterializedViews(bool materializedViews) { m_materializedViews = materializedViews; }

    /// As PostgresTreeSorting::tables(). [any]
    static List sortViews(List views);

    QString displayName() const override;
    DXMenu menu() override;

protected:
    PostgresCatalogueQuery query(const QString &serverVersion) const override;
    QString errorDomain() const override;
    std::shared_ptr<DXDatabaseTreeEntry> makeEntry(const DatabaseResultSet &row,
                                                   const Naming &naming) const override;
    List sorted(List entries) const override { return sortViews(std::move(entries)); }
    bool sharesConnectionDetails() const override { return true; }

private:
    bool m_materializedViews = false;
};
