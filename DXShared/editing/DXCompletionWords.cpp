// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "editing/DXCompletionWords.h"

#include "client/DabroDBC.h"

#include <QSet>

namespace
{

// Words of the standard that drivers do not list, because names may be called so.
QStringList otherWords()
{
    return {u"ADD"_qs,          u"BEGIN"_qs,     u"BETWEEN"_qs,   u"BY"_qs,        u"CASCADE"_qs,
            u"COLUMN"_qs,       u"CONFLICT"_qs,  u"DATABASE"_qs,  u"DELETE"_qs,    u"EXISTS"_qs,
            u"EXPLAIN"_qs,      u"FILTER"_qs,    u"FIRST"_qs,     u"FOLLOWING"_qs, u"FUNCTION"_qs,
            u"IF"_qs,           u"INDEX"_qs,     u"INSERT"_qs,    u"KEY"_qs,       u"LAST"_qs,
            u"MATERIALIZED"_qs, u"NOTHING"_qs,   u"NULLS"_qs,     u"OVER"_qs,      u"PARTITION"_qs,
            u"PRECEDING"_qs,    u"RANGE"_qs,     u"RECURSIVE"_qs, u"RENAME"_qs,    u"REPLACE"_qs,
            u"RESTRICT"_qs,     u"ROW"_qs,       u"ROWS"_qs,      u"SCHEMA"_qs,    u"SEQUENCE"_qs,
            u"SET"_qs,          u"TEMPORARY"_qs, u"TRIGGER"_qs,   u"TYPE"_qs,      u"UNBOUNDED"_qs,
            u"UPDATE"_qs,       u"VALUES"_qs,    u"VIEW"_qs,      u"WITHIN"_qs,    u"ZONE"_qs};
}

} // namespace

DXCompletionWords::DXCompletionWords(const DabroDBC &details)
{
    const QStringList functions = details.sqlFunctions();
    const QStringList keywords = details.sqlKeywords() + otherWords();
    QSet<QString> known;
    QStringList names;
    const auto add = [&](const QString &word, bool isFunction) {
        const qsizetype before = known.size();
        known.insert(word.toUpper());
        if (known.size() == before)
            return;
        m_words += {word, isFunction};
        names += word;
    };
    for (const QString &word : keywords)
        add(word, false);
    for (const QString &word : functions)
        add(word, true);
    m_index = DXNameIndex(names);
}

QList<DXNameIndex::Hit> DXCompletionWords::find(const QString &typed, qsizetype limit,
                                                bool withFunctions) const
{
    return m_index.find(
        typed, limit, [&](qsizetype index) { return withFunctions || !m_words[index].isFunction; });
}
