// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

/// Sets where a sequence starts: at its next value, which reading it uses up.
class PostgresScriptAlterSequenceQueryLoader final : public PostgresScriptQueryLoader
{
public:
    struct Init
    {
        QString sequenceName;
        QString schema;
    };
    explicit PostgresScriptAlterSequenceQueryLoader(const Init &init);

    /// Set before loading. [main]
    QString sequenceName() const { return m_sequenceName; }
    void setSequenceName(const QString &sequenceName) { m_sequenceName = sequenceName; }
    QString schema() const { return m_schema; }
    void setSchema(const QString &schema) { m_schema = schema; }

protected:
    QString script(const DabroDBC &details) const override;

private:
    QString m_sequenceName;
    QString m_schema;
};
