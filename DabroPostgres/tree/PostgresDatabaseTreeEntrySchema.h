// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeEntry.h"

/// A schema with its six sections, which take no query.
class PostgresDatabaseTreeEntrySchema final : public DXDatabaseTreeEntry
{
public:
    explicit PostgresDatabaseTreeEntrySchema(const QString &parentSchema);

    QString schema() const { return m_schema; }

    QString displayName() const override { return m_schema; }
    QString imageName() const override;
    bool canHaveChildren() const override { return true; }
    /// Makes the sections before it returns, which is always false. [any]
    bool loadEntriesAsync(Reload reload) override;

private:
    const QString m_schema;
};
