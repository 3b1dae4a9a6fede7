// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

/// Drops a database.
class PostgresScriptDropDatabaseQueryLoader final : public PostgresScriptQueryLoader
{
public:
    explicit PostgresScriptDropDatabaseQueryLoader(const QString &databaseName);

    /// Set before loading. [main]
    QString databaseName() const { return m_databaseName; }
    void setDatabaseName(const QString &databaseName) { m_databaseName = databaseName; }

protected:
    QString script(const DabroDBC &details) const override;

private:
    QString m_databaseName;
};
