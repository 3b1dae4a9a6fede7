// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/SQLRecentConnectionList.h"

#include "client/SQLRecentConnection.h"
#include "core/DXLogHelper.h"
#include "core/DXNotificationCenter.h"
#include "dispatch/DXDispatch.h"

#include <algorithm>
#include <utility>

using State = DXSecretStore::Answer::State;
using Archives = SQLRecentConnectionArchives;

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
    if (record->connectionId().isEmpty())
        record->setConnectionId(SQLRecentConnection::createConnectionId());
    addOrUpdate(record);
    record->didLoad();
    changed();
    keep(record->encode(), done);
}

void SQLRecentConnectionList::removeConnection(const Record &record, const Done &done)
{
    DX_ASSERT_MAIN();
    m_records.removeOne(recordWithId(record->connectionId()));
    changed();
    keep(Archives::removalOf(record->connectionId()), done);
}

void SQLRecentConnectionList::removeAllRecentConnections(const Done &done)
{
    DX_ASSERT_MAIN();
    m_init.store.lock([this, done](const DXSecretStore::Lock &lock, const DXError &refusal) {
        if (!lock) {
            done(refusal);
            return;
        }
        m_init.store.write(m_init.key, QString(), [this, lock, done](const DXError &error) {
            if (error) {
                done(error);
                return;
            }
            m_records.clear();
            m_changes.clear();
            m_isLoaded = true;
            changed();
            m_init.store.changeSealed(
                pendingKey(), [](const QString &) { return QString(); },
                [lock, done](const DXError &left) { done(left); });
        });
    });
}

void SQLRecentConnectionList::changed()
{
    DXNotificationCenter::sharedInstance().post(notificationName(), this);
}

void SQLRecentConnectionList::keep(const QCborMap &change, const Done &done)
{
    const quint64 number = ++m_lastNumber;
    m_changes.append({.number = number, .archive = change});
    m_init.store.changeSealed(
        pendingKey(),
        [change](const QString &text) {
            Archives changes(text);
            changes.put(change);
            return changes.text();
        },
        [this, number, done](const DXError &error) { sealed(number, error, done); });
}

void SQLRecentConnectionList::sealed(quint64 number, const DXError &error, const Done &done)
{
    for (Change &change : m_changes)
        change.isSealed |= change.number == number && !error;
    if (error)
        m_unsealed.append(done);
    m_isMergeDue = true;
    if (!error)
        done({});
    next();
}

// One thing after the other: what is read is not to be older than what was written.
void SQLRecentConnectionList::next()
{
    if (m_isBusy || (m_loads.isEmpty() && !m_isMergeDue))
        return;
    m_isBusy = true;
    if (m_loads.isEmpty())
        mergeNow();
    else
        loadNow();
}

void SQLRecentConnectionList::load(const Done &done)
{
    DX_ASSERT_MAIN();
    m_loads.append(done);
    next();
}

void SQLRecentConnectionList::loadNow()
{
    read([this](const Contents &contents) {
        m_isLoaded = contents.state != State::Unavailable;
        m_isMergeDue |= m_isLoaded && contents.isToBeWritten;
        show(contents);
        changed();
        const QList<Done> loads = std::exchange(m_loads, {});
        m_isBusy = false;
        for (const Done &done : loads)
            done(contents.error);
        next();
    });
}

void SQLRecentConnectionList::mergeNow()
{
    m_isMergeDue = false;
    m_init.store.lock([this](const DXSecretStore::Lock &lock, const DXError &error) {
        if (!lock) {
            ended(error);
            return;
        }
        read([this, lock](const Contents &contents) { merge(contents, lock); });
    });
}

// The lock is kept until the store is through with it, even if the service takes longer than is
// waited for: what it writes then must not replace what another program stored.
void SQLRecentConnectionList::merge(const Contents &contents, const DXSecretStore::Lock &lock)
{
    if (contents.state == State::Unavailable) {
        ended(contents.error);
        return;
    }
    m_isLoaded = true;
    if (show(contents))
        changed();
    if (!contents.isToBeWritten) {
        ended({});
        return;
    }
    const auto written = [this, lock, contents](const DXError &error) {
        if (error) {
            ended(error);
            return;
        }
        m_changes.removeIf(
            [&contents](const Change &change) { return change.number <= contents.lastNumber; });
        const auto drop = [merged = contents.changes](const QString &text) {
            Archives left(text);
            left.drop(merged);
            return left.isEmpty() ? QString() : left.text();
        };
        m_init.store.changeSealed(pendingKey(), drop,
                                  [this, lock](const DXError &kept) { ended(kept); });
    };
    m_init.store.write(m_init.key, contents.merged.text(), written);
}

void SQLRecentConnectionList::ended(const DXError &error)
{
    const QList<Done> unsealed = std::exchange(m_unsealed, {});
    if (error && unsealed.isEmpty())
        DXLog(QStringLiteral("Saved connections wait to be stored. ") + error.description());
    else if (error)
        DXLogHelper::sharedInstance().logError(error);
    m_isBusy = false;
    for (const Done &done : unsealed)
        done(error);
    next();
}

// The changes first: another program may be about to make them a part of what is stored.
void SQLRecentConnectionList::read(const std::function<void(const Contents &contents)> &done)
{
    const quint64 lastNumber = m_lastNumber;
    m_init.store.readSealed(pendingKey(), [this, lastNumber,
                                           done](const DXSecretStore::Answer &changes) {
        m_init.store.read(m_init.key,
                          [this, lastNumber, changes, done](const DXSecretStore::Answer &stored) {
                              done(contentsOf(changes, stored, lastNumber));
                          });
    });
}

SQLRecentConnectionList::Contents
SQLRecentConnectionList::contentsOf(const DXSecretStore::Answer &changes,
                                    const DXSecretStore::Answer &stored, quint64 lastNumber)
{
    if (m_stored.text != stored.text) {
        m_stored = {.text = stored.text, .archives = Archives(stored.text)};
        m_stored.hasNewIds = m_stored.archives.giveIds();
    }
    Contents contents{.state = stored.state,
                      .error = stored.error,
                      .merged = m_stored.archives,
                      .changes = Archives(changes.text),
                      .lastNumber = lastNumber,
                      .isToBeWritten = m_stored.hasNewIds};
    // What is sealed was read, here or where another program has put it.
    m_changes.removeIf([lastNumber](const Change &change) {
        return change.isSealed && change.number <= lastNumber;
    });
    contents.merged.apply(contents.changes);
    Archives unsealed;
    for (const Change &change : std::as_const(m_changes)) {
        if (change.number <= lastNumber)
            unsealed.put(change.archive);
    }
    contents.merged.apply(unsealed);
    contents.isToBeWritten |= !contents.changes.isEmpty() || !unsealed.isEmpty();
    return contents;
}

// Records stay the objects that they are, since others keep them. What only memory holds, such as a
// password that was typed, stays while the connection is what it was typed for.
SQLRecentConnectionList::Record SQLRecentConnectionList::shownFor(const QCborMap &archive,
                                                                  bool &isNews) const
{
    const Record stored = m_init.createRecord();
    stored->decode(archive);
    const Record known = recordWithId(stored->connectionId());
    if (!known) {
        stored->didLoad();
        isNews = true;
        return stored;
    }
    stored->setConnectionId(known->connectionId());
    isNews |= known->connectionDate() != stored->connectionDate();
    known->setConnectionDate(stored->connectionDate());
    if (known->encode() != stored->encode()) {
        known->copyFrom(*stored);
        known->didLoad();
        isNews = true;
    }
    return known;
}

bool SQLRecentConnectionList::show(const Contents &contents)
{
    Archives shown = contents.merged;
    if (contents.state == State::Unavailable) {
        shown = Archives();
        for (const Record &record : std::as_const(m_records))
            shown.put(record->encode());
        shown.apply(contents.changes);
    }
    Archives later;
    for (const Change &change : std::as_const(m_changes)) {
        if (change.number > contents.lastNumber)
            later.put(change.archive);
    }
    shown.apply(later);

    QList<Record> records;
    bool isNews = false;
    for (const auto &archive : shown.archives())
        records.append(shownFor(archive.toMap(), isNews));
    isNews |= records.size() != m_records.size();
    m_records = records;
    return isNews;
}
