// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "query/DXScriptCatalogue.h"

/// The script loaders by name.
class PostgresScriptCatalogue final : public DXScriptCatalogue
{
public:
    PostgresScriptCatalogue() = default;

    QList<Kind> kinds() const override;
    std::shared_ptr<DXQueryLoader> createLoader(const Request &request, const DabroDBC &details,
                                                DXError *error) const override;
    bool objectExists(const Request &request, const DabroDBC &details,
                      DXError *error) const override;
};
