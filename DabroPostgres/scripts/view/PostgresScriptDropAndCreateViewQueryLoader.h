// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

/// Drops a view or a materialized view and creates it anew.
class PostgresScriptDropAndCreateViewQueryLoader final : public PostgresScriptQueryLoader
{
public:
    struct Init
    {
        QString view;
        QString schema;
        bool isMaterialized = false;
    };
    explicit PostgresScriptDropAndCreateViewQueryLoader(const Init &init);

protected:
    QString script(const DabroDBC &details) const override;

private:
    const QString m_view;
    const QString m_schema;
    const bool m_isMaterialized;
};
