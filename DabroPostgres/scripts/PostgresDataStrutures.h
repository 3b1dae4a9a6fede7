// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "scripts/PostgresSchemaAndTable.h"

class DabroDBC;

/// The tables of a database and their columns, for choosing among them.
class PostgresDataStrutures final
{
public:
    PostgresDataStrutures() = delete;

    /// All tables of the users, by schema and table. *Slot decides*: what was read before a failure
    /// is returned with it. The selector is `loadSchemaAndTable:error:`. [background]
    static QList<PostgresSchemaAndTable> loadSchemaAndTable(const DabroDBC &details,
                                                            DXError *error);
};
