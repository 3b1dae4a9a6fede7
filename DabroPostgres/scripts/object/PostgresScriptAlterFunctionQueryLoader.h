// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

/// A function or procedure as CREATE OR REPLACE.
class PostgresScriptAlterFunctionQueryLoader final : public PostgresScriptQueryLoader
{
public:
    struct Init
    {
        QString function;
        /// The types of the arguments, separated by commas; absent for none.
        QString overload;
    };
    explicit PostgresScriptAlterFunctionQueryLoader(const Init &init);

protected:
    QString script(const DabroDBC &details) const override;

private:
    const QString m_function;
    const QString m_overload;
};
