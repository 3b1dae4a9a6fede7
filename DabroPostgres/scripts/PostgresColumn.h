// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// A column of a table as the catalogue describes it.
struct PostgresColumn
{
    QString columnName;
    /// The type as PostgreSQL writes it, with its length or precision.
    QString dataType;
    bool isNullable = false;
    bool isPrimaryKey = false;
};
