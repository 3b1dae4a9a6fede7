// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/SQLRecentConnectionArchives.h"
#include "client/secrets/DXSecretStore.h"
#include "core/DXError.h"
#include "core/DXGlobal.h"

#include <QCborMap>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

class SQLRecentConnection;

/// The saved connections of one driver, kept in the secret store as one text. [main], call-backs
/// included.
///
/// What is saved or removed here is first sealed by itself, under the same key with ".pending",
/// where it outlives the program, and then made a part of what is stored: what other programs
/// stored meanwhile stays and appears here too. What is stored but cannot be read (a locked
/// keyring) is never written over; until it can be, the changes wait.
class DXSHARED_EXPORT SQLRecentConnectionList final
{
public:
    using Record = std::shared_ptr<SQLRecentConnection>;
    using Done = std::function<void(const DXError &error)>;

    struct Init
    {
        /// The key in the store.
        QString key;
        /// Makes an empty record of the driver's kind.
        std::function<Record()> createRecord;
        /// Has to outlive the list.
        DXSecretStore &store;
    };
    explicit SQLRecentConnectionList(const Init &init);

    /// Posted, with this list as its object, when its records changed.
    static QString notificationName();

    /// Reads the store. error tells why what is stored could not be had; a text that cannot be read
    /// as a list gives an empty one.
    /// Calls while it is read wait for the same answer.
    void load(const Done &done);
    /// Whether the store was read; until then, and while it cannot be, the list holds what was
    /// saved meanwhile.
    bool isLoaded() const { return m_isLoaded; }
    /// An empty record of the driver's kind, which belongs to no list yet.
    Record createRecord() const { return m_init.createRecord(); }
    /// Newest first. The selector is `RecentConnections`.
    QList<Record> recentConnections() const;
    /// Stamps record with the current time and saves it: over the one whose id is the same but for
    /// letter case, else as a new one, and tells its choices (didLoad()). done comes when nothing
    /// can be lost any more. The selector is `UpdateRecentConnection:`.
    void updateRecentConnection(const Record &record, const Done &done);
    /// As updateRecentConnection(). The selector is `RemoveConnection:`.
    void removeConnection(const Record &record, const Done &done);
    /// After a failure everything is as it was.
    void removeAllRecentConnections(const Done &done);

private:
    Q_DISABLE_COPY_MOVE(SQLRecentConnectionList)

    /// A change that may not be sealed.
    struct Change
    {
        quint64 number = 0;
        QCborMap archive = {};
        bool isSealed = false;
    };
    struct Contents
    {
        /// Of the store; what could not be had is empty.
        DXSecretStore::Answer::State state;
        DXError error;
        /// What is stored, with the changes.
        SQLRecentConnectionArchives merged = {};
        /// The sealed changes.
        SQLRecentConnectionArchives changes = {};
        /// The last change that was known when this was read.
        quint64 lastNumber = 0;
        bool isToBeWritten = false;
    };

    /// What was read last, so that its new identities stay until they are stored.
    struct Stored
    {
        QString text = {};
        SQLRecentConnectionArchives archives = {};
        bool hasNewIds = false;
    };

    /// Null for none; letter case does not count.
    Record recordWithId(const QString &id) const;
    void addOrUpdate(const Record &record);
    void keep(const QCborMap &change, const Done &done);
    void sealed(quint64 number, const DXError &error, const Done &done);
    void next();
    void loadNow();
    void mergeNow();
    void merge(const Contents &contents, const DXSecretStore::Lock &lock);
    void ended(const DXError &error);
    void read(const std::function<void(const Contents &contents)> &done);
    Contents contentsOf(const DXSecretStore::Answer &changes, const DXSecretStore::Answer &stored,
                        quint64 lastNumber);
    /// Whether that changed anything.
    bool show(const Contents &contents);
    Record shownFor(const QCborMap &archive, bool &isNews) const;
    void changed();
    QString pendingKey() const;

    const Init m_init;
    QList<Record> m_records;
    Stored m_stored;
    /// Until they were read from the store again.
    QList<Change> m_changes;
    quint64 m_lastNumber = 0;
    /// Who waits for the store to be read.
    QList<Done> m_loads;
    /// Who waits for changes that could not be sealed.
    QList<Done> m_unsealed;
    bool m_isMergeDue = false;
    bool m_isBusy = false;
    bool m_isLoaded = false;
};
