// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

/// Creates a view or a materialized view.
class PostgresScriptCreateViewQueryLoader final : public PostgresScriptQueryLoader
{
public:
    struct Init
    {
        QString view;
        QString schema;
        bool isMaterialized = false;
    };
    explicit PostgresScriptCreateViewQueryLoader(const Init &init);

    /// The script itself; where the definition cannot be read, the comment about that takes its
    /// place. The selector is `createQueryForView:inSchema:isMaterialized:dbConnection:`.
    /// [background]
    static QString createQueryForView(const QString &view, const QString &inSchema,
                                      bool isMaterialized, const DabroDBC &dbConnection);
    static QString queryForCreateView(const QString &view, const QString &inSchema,
                                      const DabroDBC &dbConnectionDetails);
    static QString queryForMaterializedCreateView(const QString &view, const QString &inSchema,
                                                  const DabroDBC &dbConnectionDetails);

protected:
    QString script(const DabroDBC &details) const override;

private:
    const QString m_view;
    const QString m_schema;
    const bool m_isMaterialized;
};
