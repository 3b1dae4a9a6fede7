// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "query/DXQueryLoader.h"

/// Delivers a text that is known already, before beginLoadingQuery() returns.
class DXSHARED_EXPORT StaticQueryLoader final : public DXQueryLoader
{
public:
    explicit StaticQueryLoader(const QString &query);

    void beginLoadingQuery(const DabroDBC &details) override;

private:
    const QString m_query;
};
