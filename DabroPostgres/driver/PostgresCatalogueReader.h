// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "driver/PostgresCatalogueQuery.h"

#include <QString>

#include <functional>

class DabroDBC;
class DabroDatabaseClient;
class DatabaseResultSet;

/// Reads of the server's catalogues. A query is one statement in a read-only transaction of its own
/// that is rolled back, because names of objects are placed into its text as they are: a hostile
/// one can make it fail, no more. A plain one, which no name can have changed, is sent as it is,
/// which a small one takes a quarter less time for. [background]
class PostgresCatalogueReader final
{
public:
    PostgresCatalogueReader() = delete;

    using RowBlock = std::function<void(const DatabaseResultSet &row)>;
    enum class Access {
        ReadOnly,
        /// For reads that the server counts as writes, such as nextval().
        Writing
    };

    /// Runs query on a connection of the pool and calls block for each row. *Slot decides.*
    static void read(const DabroDBC &details, const PostgresCatalogueQuery &query,
                     const RowBlock &block, DXError *error);
    /// The same on a connection of this driver that is at hand; inside a transaction of the
    /// caller's, a subtransaction, so that a failure does not spoil it. *Slot decides.*
    static void read(DabroDatabaseClient &client, const PostgresCatalogueQuery &query,
                     const RowBlock &block, DXError *error, Access access = Access::ReadOnly);

private:
    static void readPlain(DabroDatabaseClient &client, const QString &query, const RowBlock &block,
                          DXError *error);
};
