// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXCollation.h"

#include <QCollator>
#include <QLocale>

#include <algorithm>
#include <numeric>
#include <vector>

namespace
{

QCollator userCollator()
{
    const QLocale locale = QLocale().collation();
    QCollator collator(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

using Keys = std::vector<QCollatorSortKey>;

Keys sortKeysOf(const QStringList &names)
{
    const QCollator collator = userCollator();
    Keys keys;
    keys.reserve(static_cast<std::size_t>(names.size()));
    for (const QString &name : names)
        keys.push_back(collator.sortKey(name));
    return keys;
}

QList<qsizetype> sortedIndexesOf(const Keys &keys)
{
    QList<qsizetype> indexes(static_cast<qsizetype>(keys.size()));
    std::iota(indexes.begin(), indexes.end(), 0);
    std::stable_sort(indexes.begin(), indexes.end(), [&keys](qsizetype left, qsizetype right) {
        return keys[static_cast<std::size_t>(left)] < keys[static_cast<std::size_t>(right)];
    });
    return indexes;
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
    return sortedIndexesOf(sortKeysOf(names));
}

QList<qsizetype> DXCollation::ranks(const QStringList &names)
{
    const Keys keys = sortKeysOf(names);
    QList<qsizetype> ranks(names.size());
    qsizetype rank = 0;
    const QCollatorSortKey *last = nullptr;
    for (const qsizetype index : sortedIndexesOf(keys)) {
        const QCollatorSortKey &key = keys[static_cast<std::size_t>(index)];
        if (last && last->compare(key) != 0)
            ++rank;
        last = &key;
        ranks[index] = rank;
    }
    return ranks;
}
