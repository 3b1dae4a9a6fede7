// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editing/SQLTableColumn.h"

#include <QList>

/// The columns of a table, as a designer loaded them.
struct SQLTable
{
    /// In the order of the table.
    QList<std::shared_ptr<SQLTableColumn>> columns;
    /// Whether columns tells what the server has.
    bool loaded = false;
};
