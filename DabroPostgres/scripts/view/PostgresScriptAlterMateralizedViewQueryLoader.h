// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

/// A materialized view, to be dropped and created anew once the user put its names in order: the
/// text is a draft that no server takes as it is.
class PostgresScriptAlterMateralizedViewQueryLoader final : public PostgresScriptQueryLoader
{
public:
    struct Init
    {
        QString view;
        QString schema;
    };
    explicit PostgresScriptAlterMateralizedViewQueryLoader(const Init &init);

protected:
    QString script(const DabroDBC &details) const override;

private:
    const QString m_view;
    const QString m_schema;
};
