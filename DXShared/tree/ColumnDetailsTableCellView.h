// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The texts of a cell that shows a name and, beside it and dimmed, what tells it from others of
/// that name.
struct ColumnDetailsTableCellView
{
    QString columnNameTextField;
    QString columnDetailsTextField;
};
