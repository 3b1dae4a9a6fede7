// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/sections/PostgresDatabaseTreeEntrySection.h"

/// "Triggers" of a table. Its load is `loadProcedures:error:`.
class PostgresDatabaseTreeEntrySectionTriggers final : public PostgresDatabaseTreeEntrySection
{
public:
    struct Init
    {
        QString schema;
        QString tableName;
    };
    explicit PostgresDatabaseTreeEntrySectionTriggers(const Init &init);

    QString schema() const { return m_init.schema; }
    QString tableName() const { return m_init.tableName; }

    /// The procedure that a trigger of this definition executes; null when that is not said with
    /// the word PROCEDURE. [any]
    static QString targetProcedureOf(const QString &definition);

    QString displayName() const override;
    DXMenu menu() override;

protected:
    PostgresCatalogueQuery query(const QString &serverVersion) const override;
    QString errorDomain() const override;
    std::shared_ptr<DXDatabaseTreeEntry> makeEntry(const DatabaseResultSet &row,
                                                   const Naming &naming) const override;
    std::optional<QString> sortName(const DXDatabaseTreeEntry &entry) const override;

private:
    const Init m_init;
};
