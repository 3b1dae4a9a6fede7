// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/sections/PostgresDatabaseTreeEntrySection.h"

/// "Sequences". Its load is `loadSequences:error:`.
class PostgresDatabaseTreeEntrySectionSequence final : public PostgresDatabaseTreeEntrySection
{
public:
    explicit PostgresDatabaseTreeEntrySectionSequence(const QString &parentSchema);

    QString displayName() const override;
    DXMenu menu() override;

protected:
    PostgresCatalogueQuery query(const QString &serverVersion) const override;
    QString errorDomain() const override;
    std::shared_ptr<DXDatabaseTreeEntry> makeEntry(const DatabaseResultSet &row,
                                                   const Naming &naming) const override;
    std::optional<QString> sortName(const DXDatabaseTreeEntry &entry) const override;
};
