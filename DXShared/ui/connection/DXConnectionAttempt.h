// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "core/DXGlobal.h"

#include <QString>

#include <chrono>
#include <functional>
#include <memory>

class DabroDBC;
class DabroDatabaseClient;

/// One attempt to connect, made in the background. Destroying it gives the attempt up: what still
/// comes of it is closed unseen. [main], call-back included.
class DXSHARED_EXPORT DXConnectionAttempt final
{
public:
    struct Result
    {
        /// The connected client, for whoever wants to keep it; null when the attempt failed. It
        /// closes in the background when the last owner lets go.
        std::shared_ptr<DabroDatabaseClient> client = {};
        /// Why it failed; filled whenever there is no client.
        DXError error = {};
        /// Whether a password is missing: worth asking the user for.
        bool needsPassword = false;
        QString serverVersion = {};
        /// How the server is reached, in one line.
        QString summary = {};
        std::chrono::milliseconds duration = {};
    };
    using Done = std::function<void(const Result &result)>;

    /// Starts to connect with a copy of details. done may destroy the attempt.
    DXConnectionAttempt(const DabroDBC &details, const Done &done);
    ~DXConnectionAttempt();

private:
    Q_DISABLE_COPY_MOVE(DXConnectionAttempt)

    struct Shared;
    const std::shared_ptr<Shared> m_shared;
};
