// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tree/PostgresSearchIndex.h"

#include <algorithm>
#include <cstring>

namespace
{

QByteArray folded(const QString &text)
{
    return text.toCaseFolded().toUtf8();
}

} // namespace

PostgresSearchIndex::PostgresSearchIndex(const QList<Entry> &entries)
    : m_entries(entries)
{
    m_starts.reserve(static_cast<std::size_t>(entries.size()) + 1);
    for (const Entry &entry : entries) {
        m_starts.push_back(m_text.size());
        m_text += folded(entry.search.isEmpty() ? entry.display : entry.search);
        m_text += '\0';
    }
    m_starts.push_back(m_text.size());
    for (const char byte : std::as_const(m_text))
        ++m_frequencies[static_cast<unsigned char>(byte)];
}

// The place of the byte of wanted that occurs least often.
qsizetype PostgresSearchIndex::rarestByte(QByteArrayView wanted) const
{
    const auto isRarer = [this](char left, char right) {
        return m_frequencies[static_cast<unsigned char>(left)]
               < m_frequencies[static_cast<unsigned char>(right)];
    };
    return std::min_element(wanted.begin(), wanted.end(), isRarer) - wanted.begin();
}

// The text that holds place, at or behind text. Matches are close to each other where there are
// many of them.
qsizetype PostgresSearchIndex::textAt(qsizetype place, qsizetype text) const
{
    const auto count = static_cast<qsizetype>(m_starts.size());
    qsizetype step = 1;
    while (text + step < count && m_starts[static_cast<std::size_t>(text + step)] <= place) {
        text += step;
        step *= 2;
    }
    const auto begin = m_starts.begin() + text;
    const auto end = m_starts.begin() + std::min(text + step, count);
    return std::upper_bound(begin, end, place) - m_starts.begin() - 1;
}

QList<qsizetype> PostgresSearchIndex::matches(const QString &search) const
{
    QList<qsizetype> found;
    const QByteArray wanted = folded(search);
    if (wanted.isEmpty() || wanted.contains('\0'))
        return found;
    const qsizetype rarest = rarestByte(wanted);
    const char *const begin = m_text.constData();
    // A match's rarest byte is at or before this end.
    const char *const end = begin + m_text.size() - wanted.size() + rarest + 1;
    qsizetype text = 0;
    for (const char *at = begin + rarest; at < end;) {
        const void *const next =
            std::memchr(at, wanted[rarest], static_cast<std::size_t>(end - at));
        if (!next)
            break;
        at = static_cast<const char *>(next) + 1;
        const char *const match = at - 1 - rarest;
        if (std::memcmp(match, wanted.constData(), static_cast<std::size_t>(wanted.size())) != 0)
            continue;
        text = textAt(match - begin, text);
        found.append(text);
        at = begin + m_starts[static_cast<std::size_t>(text) + 1] + rarest;
    }
    return found;
}
