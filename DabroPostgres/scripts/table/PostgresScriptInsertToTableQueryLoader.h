// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

#include <QStringList>

/// Inserts a row into a table, its values left to the user; columns that a sequence fills are
/// left out.
class PostgresScriptInsertToTableQueryLoader final : public PostgresScriptQueryLoader
{
public:
    /// tablePath begins with the schema and ends with the table.
    explicit PostgresScriptInsertToTableQueryLoader(const QStringList &tablePath);

protected:
    QString script(const DabroDBC &details) const override;

private:
    const QStringList m_internalTablePath;
};
