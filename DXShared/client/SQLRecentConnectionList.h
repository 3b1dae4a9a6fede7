// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "core/DXGlobal.h"

#include <QList>
#include <QString>

#include <functional>
#include <memory>

class DXSecretStore;
class SQLRecentConnection;

/// The saved connections of one driver, kept in the secret store as one text: the Base64 form of
/// their archives in CBOR. [main], call-backs included.
///
/// What is stored but cannot be read (a locked keyring) is never written over: until it can be,
/// what the user saves is kept apart, under the same key with ".pending", and joined with the rest
/// when a later load() succeeds.
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
    /// letter case, else as a new one, and tells its choices (didLoad()). The selector is
    /// `UpdateRecentConnection:`.
    void updateRecentConnection(const Record &record, const Done &done);
    /// The selector is `RemoveConnection:`.
    void removeConnection(const Record &record, const Done &done);
    void removeAllRecentConnections(const Done &done);

private:
    Q_DISABLE_COPY_MOVE(SQLRecentConnectionList)

    struct Stored
    {
        QList<Record> records = {};
        bool hasNewIds = false;
        bool isPresent = false;
    };

    Stored decode(const QString &text) const;
    /// Null for none; letter case does not count.
    Record recordWithId(const QString &id) const;
    void addOrUpdate(const Record &record);
    void take(const Stored &stored, const Stored &pending);
    void changed();
    void save(const Done &done);
    QString pendingKey() const;

    const Init m_init;
    QList<Record> m_records;
    QList<Done> m_waiting;
    bool m_isLoaded = false;
};
