// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// One label of an enumeration type. A value.
struct PostgresEnumDetails
{
    /// For the user.
    QString display;
    /// What the column stores: the same label.
    QString value;

    friend bool operator==(const PostgresEnumDetails &left,
                           const PostgresEnumDetails &right) = default;
};
