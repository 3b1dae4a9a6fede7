// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

/// A composite type as CREATE TYPE.
class PostgresScriptAlterTypeQueryLoader final : public PostgresScriptQueryLoader
{
public:
    struct Init
    {
        QString typeName;
        QString schema;
    };
    explicit PostgresScriptAlterTypeQueryLoader(const Init &init);

    /// Set before loading. [main]
    QString typeName() const { return m_typeName; }
    void setTypeName(const QString &typeName) { m_typeName = typeName; }
    QString schema() const { return m_schema; }
    void setSchema(const QString &schema) { m_schema = schema; }

protected:
    QString script(const DabroDBC &details) const override;

private:
    QString m_typeName;
    QString m_schema;
};
