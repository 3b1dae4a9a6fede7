// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXCollationKeys.h"

#include <QLocale>

#include <algorithm>
#include <numeric>

namespace
{

QLocale userLocale()
{
    const QLocale locale = QLocale().collation();
    return locale.language() == QLocale::C ? QLocale(QLocale::English) : locale;
}

} // namespace

DXCollationKeys::DXCollationKeys()
    : m_collator(userLocale())
{
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
}

QList<qsizetype> DXCollationKeys::sortedIndexes(const Before &before) const
{
    QList<qsizetype> indexes(size());
    std::iota(indexes.begin(), indexes.end(), 0);
    std::sort(indexes.begin(), indexes.end(), [&](qsizetype left, qsizetype right) {
        const int order =
            m_keys[static_cast<std::size_t>(left)].compare(m_keys[static_cast<std::size_t>(right)]);
        if (order != 0)
            return order < 0;
        if (before && before(left, right))
            return true;
        return left < right && !(before && before(right, left));
    });
    return indexes;
}

QList<qsizetype> DXCollationKeys::ranks() const
{
    QList<qsizetype> ranks(size());
    qsizetype rank = 0;
    const QCollatorSortKey *last = nullptr;
    for (const qsizetype index : sortedIndexes()) {
        const QCollatorSortKey &key = m_keys[static_cast<std::size_t>(index)];
        if (last && last->compare(key) != 0)
            ++rank;
        last = &key;
        ranks[index] = rank;
    }
    return ranks;
}
