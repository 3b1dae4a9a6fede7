// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

/// Creates a table as it is, in a transaction: columns, defaults, primary key.
class PostgresScriptCreateTableQueryLoader final : public PostgresScriptQueryLoader
{
public:
    struct Init
    {
        QString tableName;
        QString schema;
    };
    explicit PostgresScriptCreateTableQueryLoader(const Init &init);

    /// The script itself, or the comment about its failure. The selector is
    /// `creationQueryForTable:inSchema:dbConnection:`. [background]
    static QString creationQueryForTable(const QString &table, const QString &inSchema,
                                         const DabroDBC &dbConnection);

protected:
    QString script(const DabroDBC &details) const override;

private:
    const QString m_internalTableName;
    const QString m_internalSchemaName;
};
