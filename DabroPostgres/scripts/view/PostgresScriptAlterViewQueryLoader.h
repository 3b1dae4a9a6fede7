// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scripts/PostgresScriptQueryLoader.h"

/// A view as CREATE OR REPLACE VIEW, without its schema.
class PostgresScriptAlterViewQueryLoader final : public PostgresScriptQueryLoader
{
public:
    explicit PostgresScriptAlterViewQueryLoader(const QString &view);

protected:
    QString script(const DabroDBC &details) const override;

private:
    const QString m_view;
};
