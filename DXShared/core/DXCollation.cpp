// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXCollation.h"

#include "core/DXCollationKeys.h"

namespace
{

DXCollationKeys keysOf(const QStringList &names)
{
    DXCollationKeys keys;
    for (const QString &name : names)
        keys.add(name);
    return keys;
}

} // namespace

QStringList DXCollation::sorted(const QStringList &names)
{
    QStringList result;
    result.reserve(names.size());
    for (const qsizetype index : sortedIndexes(names))
        result.append(names.at(index));
    return result;
}

QList<qsizetype> DXCollation::sortedIndexes(const QStringList &names)
{
    return keysOf(names).sortedIndexes();
}

QList<qsizetype> DXCollation::ranks(const QStringList &names)
{
    return keysOf(names).ranks();
}
