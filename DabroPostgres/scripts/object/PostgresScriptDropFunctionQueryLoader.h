// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

/// Drops a function; its name and arguments are written as they are.
class PostgresScriptDropFunctionQueryLoader final : public PostgresScriptQueryLoader
{
public:
    struct Init
    {
        QString function;
        /// The types of the arguments, separated by commas; absent for none.
        QString overload;
        QString schema;
    };
    explicit PostgresScriptDropFunctionQueryLoader(const Init &init);

protected:
    QString script(const DabroDBC &details) const override;

private:
    const QString m_targetFunction;
    const QString m_targetOverload;
    const QString m_targetSchema;
};
