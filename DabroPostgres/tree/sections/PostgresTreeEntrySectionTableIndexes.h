// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/sections/PostgresDatabaseTreeEntrySection.h"

/// "Indexes" of a table. Its load is `loadKeys:error:`.
class PostgresTreeEntrySectionTableIndexes final : public PostgresDatabaseTreeEntrySection
{
public:
    struct Init
    {
        /// Empty for the first schema of the session's search path.
        QString schema;
        QString tableName;
        bool isView = false;
    };
    explicit PostgresTreeEntrySectionTableIndexes(const Init &init);

    QString schema() const { return m_init.schema; }
    QString tableName() const { return m_init.tableName; }
    bool isView() const { return m_init.isView; }

    QString displayName() const override;
    DXMenu menu() override;

protected:
    PostgresCatalogueQuery query(const QString &serverVersion) const override;
    QString errorDomain() const override;
    std::shared_ptr<DXDatabaseTreeEntry> makeEntry(const DatabaseResultSet &row,
                                                   const Naming &naming) const override;

private:
    const Init m_init;
};
