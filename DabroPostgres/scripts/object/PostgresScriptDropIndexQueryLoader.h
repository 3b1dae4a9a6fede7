// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

/// Drops an index.
class PostgresScriptDropIndexQueryLoader final : public PostgresScriptQueryLoader
{
public:
    struct Init
    {
        QString indexName;
        QString schema;
    };
    explicit PostgresScriptDropIndexQueryLoader(const Init &init);

    /// Set before loading. [main]
    QString indexName() const { return m_indexName; }
    void setIndexName(const QString &indexName) { m_indexName = indexName; }
    QString schema() const { return m_schema; }
    void setSchema(const QString &schema) { m_schema = schema; }

protected:
    QString script(const DabroDBC &details) const override;

private:
    QString m_indexName;
    QString m_schema;
};
