// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXSealedFile.h"
#include "core/DXError.h"
#include "core/DXGlobal.h"

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
    /// Stores text, or forgets what is under key when text is null; error is empty when it worked.
    void write(const QString &key, const QString &text,
               const std::function<void(const DXError &error)> &done);

private:
    Q_DISABLE_COPY_MOVE(DXSecretStore)

    void readFromService(const QString &key, const std::function<void(const Answer &)> &done) const;
    QString markOf(const QString &key) const;
    bool isInService(const QString &key) const;
    void setInService(const QString &key, bool isThere) const;

    const QString m_folder;
    const std::chrono::milliseconds m_patience;
    const std::shared_ptr<const DXSealedFile> m_file;
};
