// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeEntry.h"

/// An index of a table.
class PostgresTreeEntryTableIndex final : public DXDatabaseTreeEntry
{
public:
    struct Init
    {
        QString schema;
        QString indexName;
    };
    explicit PostgresTreeEntryTableIndex(const Init &init);

    QString schema() const { return m_init.schema; }
    QString indexName() const { return m_init.indexName; }

    QString imageName() const override;
    DXMenu menu() override;

private:
    const Init m_init;
};
