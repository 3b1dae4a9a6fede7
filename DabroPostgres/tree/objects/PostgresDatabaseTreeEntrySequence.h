// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/DXDatabaseTreeEntry.h"

/// A sequence, below a section or below the column that draws from it.
class PostgresDatabaseTreeEntrySequence final : public DXDatabaseTreeEntry
{
public:
    struct Init
    {
        QString sequenceName;
        QString schema = {};
        QString defaultSchema = {};
        int displaySchema = 0;
    };
    explicit PostgresDatabaseTreeEntrySequence(const Init &init);

    QString sequenceName() const { return m_sequenceName; }
    QString schema() const { return m_schema; }
    bool shouldDisplaySchema() const { return m_shouldDisplaySchema; }
    /// False for a column's own sequence. Set by whoever makes the node.
    bool canDrop() const { return m_canDrop; }
    void setCanDrop(bool canDrop) { m_canDrop = canDrop; }

    std::shared_ptr<DXQueryLoader> queryLoaderForAlter() const;

    QString displayName() const override;
    QString imageName() const override;
    DXMenu menu() override;
    void onDoubleClicked() override { cmdDown(); }
    void cmdDown() override;

private:
    const QString m_sequenceName;
    const QString m_schema;
    const bool m_shouldDisplaySchema;
    bool m_canDrop = true;
};
