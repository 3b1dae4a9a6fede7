// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCborArray>
#include <QCborMap>
#include <QString>

/// The archives of saved connections as they are stored: one text, the Base64 form of their list in
/// CBOR. The same holds changes that are still to be made to such a list: connections to put into
/// it, and marks of those to remove. Fields that are not known here stay as they are. A plain
/// value. [any]
class SQLRecentConnectionArchives final
{
public:
    SQLRecentConnectionArchives() = default;
    /// A text that cannot be read gives an empty list.
    explicit SQLRecentConnectionArchives(const QString &text);
    QString text() const;

    bool isEmpty() const { return m_archives.isEmpty(); }
    const QCborArray &archives() const { return m_archives; }
    /// Gives every archive without an identity a new one; whether there was any.
    bool giveIds();

    /// What stands for the removal of the connection with this identity.
    static QCborMap removalOf(const QString &connectionId);
    /// Keeps change, an archive or a removal, in the place of what is here under its identity,
    /// whose letter case does not count and stays.
    void put(const QCborMap &change);
    /// Carries changes out, but for those that were carried out before: what is here was saved
    /// again since.
    void apply(const SQLRecentConnectionArchives &changes);
    /// Drops everything that stands in others too, exactly as it is here.
    void drop(const SQLRecentConnectionArchives &others);

private:
    /// -1 for none.
    qsizetype indexOf(const QString &connectionId) const;

    QCborArray m_archives;
};
