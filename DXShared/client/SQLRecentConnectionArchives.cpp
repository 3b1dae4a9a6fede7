// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/SQLRecentConnectionArchives.h"

#include "client/SQLRecentConnection.h"

#include <QDateTime>

namespace
{

constexpr QLatin1String idKey("connectionId");
constexpr QLatin1String dateKey("connectionDate");
constexpr QLatin1String removedKey("isRemoved");

QString idOf(const QCborValue &archive)
{
    return archive.toMap().value(idKey).toString();
}

// A date to come was set by a clock that was wrong, and tells nothing.
bool isLater(const QCborMap &stored, const QCborMap &change)
{
    const QDateTime date = stored.value(dateKey).toDateTime();
    return date > change.value(dateKey).toDateTime() && date <= QDateTime::currentDateTimeUtc();
}

} // namespace

SQLRecentConnectionArchives::SQLRecentConnectionArchives(const QString &text)
    : m_archives(QCborValue::fromCbor(QByteArray::fromBase64(text.toLatin1())).toArray())
{ }

QString SQLRecentConnectionArchives::text() const
{
    return QString::fromLatin1(QCborValue(m_archives).toCbor().toBase64());
}

bool SQLRecentConnectionArchives::giveIds()
{
    bool areNew = false;
    for (qsizetype index = 0; index < m_archives.size(); ++index) {
        QCborMap archive = m_archives.at(index).toMap();
        if (!idOf(archive).isEmpty())
            continue;
        archive.insert(idKey, SQLRecentConnection::createConnectionId());
        m_archives[index] = archive;
        areNew = true;
    }
    return areNew;
}

QCborMap SQLRecentConnectionArchives::removalOf(const QString &connectionId)
{
    return {{idKey, connectionId},
            {dateKey, QCborValue(QDateTime::currentDateTimeUtc())},
            {removedKey, true}};
}

qsizetype SQLRecentConnectionArchives::indexOf(const QString &connectionId) const
{
    for (qsizetype index = 0; index < m_archives.size(); ++index) {
        if (idOf(m_archives.at(index)).compare(connectionId, Qt::CaseInsensitive) == 0)
            return index;
    }
    return -1;
}

void SQLRecentConnectionArchives::put(const QCborMap &change)
{
    const qsizetype index = indexOf(idOf(change));
    if (index < 0) {
        m_archives.append(change);
        return;
    }
    QCborMap archive = change;
    archive.insert(idKey, idOf(m_archives.at(index)));
    m_archives[index] = archive;
}

void SQLRecentConnectionArchives::apply(const SQLRecentConnectionArchives &changes)
{
    for (const auto &value : changes.m_archives) {
        const QCborMap change = value.toMap();
        const qsizetype index = indexOf(idOf(change));
        if (index >= 0 && isLater(m_archives.at(index).toMap(), change))
            continue;
        if (!change.value(removedKey).toBool())
            put(change);
        else if (index >= 0)
            m_archives.removeAt(index);
    }
}

void SQLRecentConnectionArchives::drop(const SQLRecentConnectionArchives &others)
{
    for (qsizetype index = m_archives.size() - 1; index >= 0; --index) {
        if (others.m_archives.contains(m_archives.at(index)))
            m_archives.removeAt(index);
    }
}
