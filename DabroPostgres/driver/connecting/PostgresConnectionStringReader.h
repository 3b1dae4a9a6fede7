// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"

#include <QString>

#include <memory>

class PostgresDatabaseConnectionDetails;

/// Makes a connection record of what people paste: a postgres:// URI, or key=value pairs (libpq,
/// "Connection Strings").
class PostgresConnectionStringReader final
{
public:
    PostgresConnectionStringReader() = delete;

    /// What text leaves out is filled as libpq would fill it: from the service that it names, the
    /// environment (PGHOST, PGPASSWORD, PGSERVICE, …) and the built-in defaults. Nothing, with
    /// error set, for what cannot be read, and for a parameter that a record cannot carry: the
    /// error names it and the remedy. Parameters that the environment alone sets stay there, where
    /// libpq finds them when it connects. *Result decides.* Reads files, but connects to nothing.
    /// [any]
    static std::shared_ptr<PostgresDatabaseConnectionDetails> read(const QString &text,
                                                                   DXError *error);
};
