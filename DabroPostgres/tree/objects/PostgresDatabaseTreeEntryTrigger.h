// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tree/objects/PostgresDatabaseTreeEntryOnlyChild.h"

/// A trigger of a table. Below it is the function that it calls.
class PostgresDatabaseTreeEntryTrigger final : public PostgresDatabaseTreeEntryOnlyChild
{
public:
    struct Init
    {
        QString triggerName;
        /// The table's, which is the trigger's.
        QString schema = {};
        QString tableName = {};
        /// Null when it is not known.
        QString targetProcedure = {};
        QString defaultSchema = {};
    };
    explicit PostgresDatabaseTreeEntryTrigger(const Init &init);

    QString triggerName() const { return m_init.triggerName; }
    QString triggerSchema() const { return m_init.schema; }
    QString tableName() const { return m_init.tableName; }
    QString targetProcedure() const { return m_init.targetProcedure; }

    QString displayName() const override { return m_init.triggerName; }
    QString imageName() const override;
    DXMenu menu() override;
    bool canHaveChildren() const override { return !m_init.targetProcedure.isNull(); }

protected:
    std::shared_ptr<DXDatabaseTreeEntry> makeChild() const override;

private:
    const Init m_init;
};
