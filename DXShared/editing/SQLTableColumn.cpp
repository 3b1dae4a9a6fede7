// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/SQLTableColumn.h"

SQLTableColumn::~SQLTableColumn() = default;

std::shared_ptr<SQLTableColumn> SQLTableColumn::copy() const
{
    return std::shared_ptr<SQLTableColumn>(new SQLTableColumn(*this));
}
