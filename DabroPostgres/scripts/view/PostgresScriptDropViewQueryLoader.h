// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

/// Drops a view or a materialized view.
class PostgresScriptDropViewQueryLoader final : public PostgresScriptQueryLoader
{
public:
    struct Init
    {
        QString view;
        QString schema;
        bool isMaterialized = false;
    };
    explicit PostgresScriptDropViewQueryLoader(const Init &init);

    /// The script itself. The selector is `dropQueryForView:inSchema:isMaterialized:dbConnection:`.
    /// [any]
    static QString dropQueryForView(const QString &view, const QString &inSchema,
                                    bool isMaterialized, const DabroDBC &dbConnection);

protected:
    QString script(const DabroDBC &details) const override;

private:
    const QString m_view;
    const QString m_schema;
    const bool m_isMaterialized;
};
