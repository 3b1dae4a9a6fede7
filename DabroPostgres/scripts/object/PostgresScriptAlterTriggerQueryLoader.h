// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

/// Drops a trigger and creates it anew, for each row.
class PostgresScriptAlterTriggerQueryLoader final : public PostgresScriptQueryLoader
{
public:
    struct Init
    {
        QString triggerName;
        QString schema;
        QString table;
    };
    explicit PostgresScriptAlterTriggerQueryLoader(const Init &init);

protected:
    QString script(const DabroDBC &details) const override;

private:
    const QString m_internalTriggerName;
    const QString m_internalTriggerSchema;
    const QString m_internalTableName;
};
