// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QList>
#include <QStringList>

#include <functional>
#include <vector>

/// Finds names by how they begin, by how a word in them begins ("items" finds order_items, "Items"
/// in OrderItems, too), and by the first letters of their words ("oi"), whatever the case. Made
/// once for a list of names, which takes about a microsecond a name; a search looks only at what it
/// finds. Never changes, so it may be shared between threads. [any]
class DXSHARED_EXPORT DXNameIndex final
{
public:
    enum class Match { Prefix, Word, Initials };
    struct Hit
    {
        /// Which of the names it was made of.
        qsizetype index = 0;
        Match match = Match::Prefix;
    };
    /// Whether a name is wanted.
    using Filter = std::function<bool(qsizetype index)>;

    DXNameIndex() = default;
    explicit DXNameIndex(const QStringList &names);

    /// At most limit names that typed finds and that filter wants, all of them without a filter;
    /// those that begin with it first, each kind of match in alphabetical order. An empty text
    /// finds every name.
    QList<Hit> find(const QString &typed, qsizetype limit, const Filter &filter = {}) const;
    /// All names that are called name, whatever the case.
    QList<qsizetype> called(const QString &name) const;

private:
    // A text in the folded texts, from here to its end.
    struct Key
    {
        quint32 offset = 0;
        qint32 index = 0;
    };
    using Keys = std::vector<Key>;

    void add(qint32 index, const QString &name);
    void sort(Keys &keys) const;
    QStringView textOf(const Key &key) const;
    Keys::const_iterator firstOf(const Keys &keys, QStringView typed) const;

    // The names in one case, and their initials, each ended by a null.
    QString m_texts;
    Keys m_names;
    Keys m_words;
    Keys m_initials;
};
