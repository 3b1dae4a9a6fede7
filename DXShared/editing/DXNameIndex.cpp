// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/DXNameIndex.h"

#include <QSet>

#include <algorithm>
#include <initializer_list>
#include <string_view>

namespace
{

constexpr QChar textEnd(u'\0');

// Where the words of a name begin but the first: behind what is no letter or digit, and where
// small letters change to capitals.
QList<qsizetype> laterWords(const QString &name)
{
    QList<qsizetype> starts;
    for (qsizetype at = 1; at < name.size(); ++at) {
        const QChar before = name[at - 1];
        const QChar here = name[at];
        const bool follows = here.isLetterOrNumber() && !before.isLetterOrNumber();
        if (follows || (here.isUpper() && before.isLower()))
            starts += at;
    }
    return starts;
}

} // namespace

DXNameIndex::DXNameIndex(const QStringList &names)
{
    m_names.reserve(static_cast<std::size_t>(names.size()));
    for (qsizetype index = 0; index < names.size(); ++index)
        add(static_cast<qint32>(index), names[index]);
    m_texts.squeeze();
    for (Keys *keys : {&m_names, &m_words, &m_initials})
        sort(*keys);
}

void DXNameIndex::add(qint32 index, const QString &name)
{
    const QString folded = name.toCaseFolded();
    const auto offset = static_cast<quint32>(m_texts.size());
    m_texts.append(folded).append(textEnd);
    m_names.push_back({offset, index});
    // Folding may change how long a few letters are.
    const QList<qsizetype> words = laterWords(folded.size() == name.size() ? name : folded);
    if (words.isEmpty())
        return;
    m_initials.push_back({static_cast<quint32>(m_texts.size()), index});
    m_texts.append(folded.front());
    for (const qsizetype word : words) {
        m_words.push_back({offset + static_cast<quint32>(word), index});
        m_texts.append(folded[word]);
    }
    m_texts.append(textEnd);
}

QStringView DXNameIndex::textOf(const Key &key) const
{
    const char16_t *const begin =
        reinterpret_cast<const char16_t *>(m_texts.constData()) + key.offset;
    return {begin, static_cast<qsizetype>(std::char_traits<char16_t>::length(begin))};
}

void DXNameIndex::sort(Keys &keys) const
{
    keys.shrink_to_fit();
    std::sort(keys.begin(), keys.end(), [this](const Key &left, const Key &right) {
        const int order = textOf(left).compare(textOf(right));
        return order != 0 ? order < 0 : left.index < right.index;
    });
}

DXNameIndex::Keys::const_iterator DXNameIndex::firstOf(const Keys &keys, QStringView typed) const
{
    return std::partition_point(keys.begin(), keys.end(), [this, typed](const Key &key) {
        return textOf(key).compare(typed) < 0;
    });
}

QList<DXNameIndex::Hit> DXNameIndex::find(const QString &typed, qsizetype limit,
                                          const Filter &filter) const
{
    const QString folded = typed.toCaseFolded();
    QList<Hit> hits;
    QSet<qint32> seen;
    const auto search = [&](const Keys &keys, Match match) {
        for (auto key = firstOf(keys, folded); key != keys.end() && hits.size() < limit; ++key) {
            if (!textOf(*key).startsWith(folded))
                return;
            if ((filter && !filter(key->index)) || seen.contains(key->index))
                continue;
            seen.insert(key->index);
            hits += {key->index, match};
        }
    };
    search(m_names, Match::Prefix);
    if (folded.isEmpty())
        return hits;
    search(m_words, Match::Word);
    // One letter is the first of a word and found as such.
    if (folded.size() > 1)
        search(m_initials, Match::Initials);
    return hits;
}

QList<qsizetype> DXNameIndex::called(const QString &name) const
{
    const QString folded = name.toCaseFolded();
    QList<qsizetype> found;
    for (auto key = firstOf(m_names, folded); key != m_names.end() && textOf(*key) == folded; ++key)
        found += key->index;
    return found;
}
