// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/secrets/DXSealedFile.h"
#include "core/DXError.h"
#include "core/DXGlobal.h"

#include <QHash>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

/// Keeps texts that hold passwords, under keys: in the desktop's secret service (Secret Service or
/// KWallet) where one answers, else in a sealed file. Nothing here blocks, and no service is spoken
/// to before the first call. [main], call-backs included; the store has to outlive what it was
/// asked.
class DXSHARED_EXPORT DXSecretStore final
{
public:
    /// The store in the user's data folder.
    static DXSecretStore &sharedInstance();
    /// A store whose files lie in folder; patience is how long the service may take to answer.
    explicit DXSecretStore(const QString &folder,
                           std::chrono::milliseconds patience = std::chrono::seconds(10));
    ~DXSecretStore();

    struct Answer
    {
        enum class State {
            Present,
            Absent,
            /// Something is stored but cannot be had now, since the service is locked or away: not
            /// to be taken for absent, and not to be written over.
            Unavailable
        };
        State state = State::Absent;
        QString text = {};
        /// Says what to do about Unavailable.
        DXError error = {};
    };
    void read(const QString &key, const std::function<void(const Answer &)> &done);
    using Done = std::function<void(const DXError &error)>;
    /// Stores text, or forgets what is under key when text is null; error is empty when it worked.
    /// Of several writes under one key the one that was asked for last stays. done is let go when
    /// the service is through with it, which may be long after the service was given up.
    void write(const QString &key, const QString &text, const Done &done);

    /// A text that is kept in the sealed file alone: nobody has to be waited for, so what has to be
    /// safe at once goes there.
    void readSealed(const QString &key, const std::function<void(const Answer &)> &done);
    /// Stores what change makes of it. Changes are made in the order asked for, change itself is
    /// called on any thread.
    void changeSealed(const QString &key, const DXSealedFile::Change &change, const Done &done);

    /// One holder at a time, of all programs, keeps the lock for as long as it keeps the object:
    /// for whoever writes what depends on what he read.
    using Lock = std::shared_ptr<void>;
    /// Waits its turn for as long as the service may take to answer. lock is null when it was in
    /// vain, and error tells why.
    void lock(const std::function<void(const Lock &lock, const DXError &error)> &done);

    /// Before the program ends: makes on this thread what changeSealed() was asked for and has not
    /// been made yet. Takes as long as a small file takes.
    void finish();

private:
    Q_DISABLE_COPY_MOVE(DXSecretStore)

    class FileWork;

    void readFromService(const QString &key, const std::function<void(const Answer &)> &done) const;
    QString markOf(const QString &key) const;
    bool isInService(const QString &key) const;
    void setInService(const QString &key, bool isThere) const;

    const QString m_folder;
    const std::chrono::milliseconds m_patience;
    const std::shared_ptr<const DXSealedFile> m_file;
    const std::shared_ptr<FileWork> m_work;
    /// The last write under each key.
    QHash<QString, quint64> m_writes;
};
