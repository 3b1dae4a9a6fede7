// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The named catalogue queries and SQL templates, kept outside the code in resources/queries. Read
/// once, never changed. [any]
class PostgresSystemDatabaseQueries final
{
public:
    PostgresSystemDatabaseQueries() = delete;

    /// The text stored under title, trimmed at both ends; null for an unknown title. Placeholders
    /// such as {TABLE_SCHEMA} are the caller's to replace. The selector is `queryByTitle:`.
    static QString queryByTitle(const QString &title);
};
