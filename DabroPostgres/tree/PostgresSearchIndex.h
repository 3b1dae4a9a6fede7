// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <array>
#include <vector>

/// What can be searched for in one database: its tables, views and functions, in the order in which
/// they are found. Made once, then only read. [any]
class PostgresSearchIndex final
{
public:
    struct Entry
    {
        QString display = {};
        QString schema = {};
        QString objectName = {};
        /// "TABLE", "VIEW" or "FUNCTION", in any case.
        QString type = {};
        /// The server's hint, by which the entries are in order.
        qint64 sortOrder = 0;
        QString defaultSchema = {};
        /// What is searched; display where this is empty.
        QString search = {};
        /// A function's argument list.
        QString details = {};
    };

    explicit PostgresSearchIndex(const QList<Entry> &entries);

    const QList<Entry> &entries() const { return m_entries; }
    /// The entries in whose text search occurs, anywhere and in whatever case, in order; none for
    /// an empty search.
    QList<qsizetype> matches(const QString &search) const;

private:
    qsizetype rarestByte(QByteArrayView wanted) const;
    qsizetype textAt(qsizetype place, qsizetype text) const;

    const QList<Entry> m_entries;
    // The case-folded texts in UTF-8, each with a zero behind it, which no text holds: one pass
    // over it serves a keystroke.
    QByteArray m_text;
    // Where each text begins, and where the last one ends.
    std::vector<qsizetype> m_starts;
    // How often each byte occurs: the rarest of a search is what is looked for.
    std::array<qsizetype, 256> m_frequencies{};
};
