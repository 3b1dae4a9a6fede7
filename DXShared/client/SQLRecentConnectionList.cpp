// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/SQLRecentConnectionList.h"

#include "client/DXSecretStore.h"
#include "client/SQLRecentConnection.h"
#include "core/DXLogHelper.h"
#include "core/DXNotificationCenter.h"
#include "dispatch/DXDispatch.h"

#include <QCborArray>

#include <algorithm>

using State = DXSecretStore::Answer::State;

SQLRecentConnectionList::SQLRecentConnectionList(const Init &init)
    : m_init(init)
{ }

QString SQLRecentConnectionList::notificationName()
{
    return DXProductName(u"SQLRecentConnectionList");
}

QString SQLRecentConnectionList::pendingKey() const
{
    return m_init.key + QStringLiteral(".pending");
}

void SQLRecentConnectionList::load(const Done &done)
{
    DX_ASSERT_MAIN();
    m_waiting.append(done);
    if (m_waiting.size() > 1)
        return;
    m_init.store.read(m_init.key, [this](const DXSecretStore::Answer &stored) {
        m_init.store.read(pendingKey(), [this, stored](const DXSecretStore::Answer &pending) {
            m_isLoaded = stored.state != State::Unavailable;
            Stored kept = decode(pending.text);
            kept.isPresent = pending.state == State::Present;
            take(decode(stored.text), kept);
            const QList<Done> waiting = std::exchange(m_waiting, {});
            for (const Done &waits : waiting)
                waits(stored.error);
        });
    });
}

// Records that are here already were saved while the others could not be read.
void SQLRecentConnectionList::take(const Stored &stored, const Stored &pending)
{
    const QList<Record> own = std::exchange(m_records, stored.records);
    for (const QList<Record> &later : {pending.records, own}) {
        for (const Record &record : later) {
            // What was kept apart may have been saved again since.
            const Record known = recordWithId(record->connectionId());
            if (!known || known->connectionDate() <= record->connectionDate())
                addOrUpdate(record);
        }
    }
    for (const Record &record : std::as_const(m_records))
        record->didLoad();
    const bool isMerged = !pending.records.isEmpty() || !own.isEmpty();
    // What was kept apart goes once it is among the rest, not before.
    const auto dropPending = [this, isPresent = pending.isPresent](const DXError &error) {
        if (!error && isPresent)
            m_init.store.write(pendingKey(), QString(), [](const DXError &) {});
    };
    if (m_isLoaded && (stored.hasNewIds || isMerged))
        save(dropPending);
    else if (m_isLoaded)
        dropPending({});
    changed();
}

SQLRecentConnectionList::Stored SQLRecentConnectionList::decode(const QString &text) const
{
    Stored stored;
    const QCborArray archives =
        QCborValue::fromCbor(QByteArray::fromBase64(text.toLatin1())).toArray();
    for (const auto &value : archives) {
        const QCborMap archive = value.toMap();
        const Record record = m_init.createRecord();
        record->decode(archive);
        stored.hasNewIds |=
            archive.value(QLatin1String("connectionId")).toString() != record->connectionId();
        stored.records.append(record);
    }
    return stored;
}

QList<SQLRecentConnectionList::Record> SQLRecentConnectionList::recentConnections() const
{
    DX_ASSERT_MAIN();
    QList<Record> records = m_records;
    std::stable_sort(records.begin(), records.end(), [](const Record &a, const Record &b) {
        return a->connectionDate() > b->connectionDate();
    });
    return records;
}

SQLRecentConnectionList::Record SQLRecentConnectionList::recordWithId(const QString &id) const
{
    const auto found =
        std::find_if(m_records.begin(), m_records.end(), [&id](const Record &record) {
            return record->connectionId().compare(id, Qt::CaseInsensitive) == 0;
        });
    return found == m_records.end() ? nullptr : *found;
}

void SQLRecentConnectionList::addOrUpdate(const Record &record)
{
    const Record known = recordWithId(record->connectionId());
    if (!known)
        m_records.append(record);
    else if (known != record)
        known->copyFrom(*record);
}

void SQLRecentConnectionList::updateRecentConnection(const Record &record, const Done &done)
{
    DX_ASSERT_MAIN();
    record->setConnectionDate(QDateTime::currentDateTimeUtc());
    addOrUpdate(record);
    record->didLoad();
    changed();
    save(done);
}

void SQLRecentConnectionList::removeConnection(const Record &record, const Done &done)
{
    DX_ASSERT_MAIN();
    // A load() since the caller got the record put another object in its place.
    m_records.removeOne(recordWithId(record->connectionId()));
    changed();
    save(done);
}

void SQLRecentConnectionList::removeAllRecentConnections(const Done &done)
{
    DX_ASSERT_MAIN();
    m_records.clear();
    m_isLoaded = true;
    changed();
    m_init.store.write(m_init.key, QString(), [this, done](const DXError &error) {
        if (error)
            done(error);
        else
            m_init.store.write(pendingKey(), QString(), done);
    });
}

void SQLRecentConnectionList::changed()
{
    DXNotificationCenter::sharedInstance().post(notificationName(), this);
}

void SQLRecentConnectionList::save(const Done &done)
{
    QCborArray archives;
    for (const Record &record : std::as_const(m_records))
        archives.append(record->encode());
    const QByteArray text = QCborValue(archives).toCbor().toBase64();
    m_init.store.write(m_isLoaded ? m_init.key : pendingKey(), QString::fromLatin1(text),
                       [done](const DXError &error) {
                           if (error)
                               DXLogHelper::sharedInstance().logError(error);
                           done(error);
                       });
}
