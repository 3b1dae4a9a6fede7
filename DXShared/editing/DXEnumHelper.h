// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXValue.h"

#include <QList>
#include <QString>

/// One choice of an enumeration.
struct DXEnumEditorEntry
{
    /// For the user.
    QString displayName;
    /// What is stored.
    DXValue value;
};

/// The choices of an enumeration column, in the server's order. A value.
struct DXEnumHelper
{
    QString enumTitle;
    QList<DXEnumEditorEntry> entries;
};
