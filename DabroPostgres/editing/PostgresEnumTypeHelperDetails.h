// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editing/PostgresEnumDetails.h"

#include <QDateTime>
#include <QList>
#include <QString>

/// One enumeration type with its labels. A value.
struct PostgresEnumTypeHelperDetails
{
    /// With its schema, joined by a dot, when the name alone means another type or none.
    QString typeName;
    /// The type's OID, as result sets give it for their columns.
    quint32 typeId = 0;
    /// Each label once, in the server's order.
    QList<PostgresEnumDetails> enumEntries;
    /// When the record was built.
    QDateTime lastUpdated;
};
