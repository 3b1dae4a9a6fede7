// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/connection/DXConnectionAttempt.h"

#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "client/ssh/DXSSHTunnel.h"
#include "dispatch/DXDispatch.h"

#include <QCoreApplication>

#include <atomic>

// Outlives the attempt: the background work ends when it ends.
struct DXConnectionAttempt::Shared final : DXSSHDelegate
{
    bool sshShouldCancel() const override { return isGivenUp; }

    std::atomic<bool> isGivenUp = false;
};

namespace
{

// Closing talks to the server and waits for ssh.
void closeInBackground(DabroDatabaseClient *client)
{
    const std::shared_ptr<DabroDatabaseClient> owner(client);
    DXDispatch::background([owner] { owner->disconnect(); });
}

DXConnectionAttempt::Result connect(const DabroDBC &details, DXSSHDelegate &delegate)
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begin = Clock::now();
    DXConnectionAttempt::Result result;
    std::shared_ptr<DabroDatabaseClient> client(details.createNewClient().release(),
                                                closeInBackground);
    if (client->connect(&result.error, &delegate)) {
        result.serverVersion = client->serverVersion();
        result.summary = client->connectionSummary();
        result.client = client;
    } else {
        result.needsPassword = client->connectionNeedsPassword();
        if (!result.error)
            result.error = DXError(
                QString(), 0,
                QCoreApplication::translate("DXConnectionAttempt",
                                            "The server did not answer as a server should."));
    }
    result.duration = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
    return result;
}

} // namespace

DXConnectionAttempt::DXConnectionAttempt(const DabroDBC &details, const Done &done)
    : m_shared(std::make_shared<Shared>())
{
    DX_ASSERT_MAIN();
    DXDispatch::background([shared = m_shared, record = details.copy(), done] {
        if (shared->isGivenUp)
            return;
        const Result result = connect(*record, *shared);
        DXDispatch::main([shared, result, done] {
            if (!shared->isGivenUp)
                done(result);
        });
    });
}

DXConnectionAttempt::~DXConnectionAttempt()
{
    m_shared->isGivenUp = true;
}
