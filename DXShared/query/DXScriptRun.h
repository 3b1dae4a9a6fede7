// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXQueryDetails.h"
#include "core/DXError.h"
#include "core/DXGlobal.h"

#include <QCoreApplication>
#include <QList>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

class DabroDBC;
class DabroDatabaseClient;

/// One run of a script in the background, on a connection of the pool: all of its statements or
/// none, unless it is told to do without a transaction. Made for one start(). Owned by shared
/// pointers: a run under way keeps itself alive.
class DXSHARED_EXPORT DXScriptRun final : public std::enable_shared_from_this<DXScriptRun>
{
    Q_DECLARE_TR_FUNCTIONS(DXScriptRun)

public:
    enum class Transaction { Yes, No };

    struct Init
    {
        /// A record that nobody changes any more.
        std::shared_ptr<const DabroDBC> connectionDetails;
        QList<DXQueryDetails> statements;
        Transaction transaction = Transaction::Yes;
        /// Done in the background before the run connects; may be empty.
        std::function<void()> preparation = {};
        /// How long a server may take to stop after it was asked, before the connection is broken.
        std::chrono::milliseconds patience = std::chrono::seconds(5);
    };

    /// What a run that did not succeed left on the server.
    enum class Changes {
        None,
        /// What was done before the failure stays done.
        Some,
        /// The connection broke, or was broken, when the server may or may not have done its part.
        Unknown
    };
    struct Outcome
    {
        /// Empty on success; its ranges are places in the whole script.
        DXError error = {};
        /// Which statement failed; -1 when none did, but connecting or the transaction around them.
        qsizetype failedStatement = -1;
        Changes changes = Changes::None;
        /// Whether it ended early because of cancel().
        bool isCancelled = false;

        bool isSuccess() const { return !error && !isCancelled; }
    };
    using Completion = std::function<void(const Outcome &outcome)>;

    explicit DXScriptRun(const Init &init);
    ~DXScriptRun();

    /// Begins; completion is called on the main thread, and never when the program is closing down
    /// meanwhile. [main]
    void start(const Completion &completion);
    /// Stops the run. True when no statement was sent yet: then none ever is, and completion is not
    /// called. Otherwise the server is asked until it gives in, and completion tells what came of
    /// it; a run that was about to end may succeed after all. When the server has not given in
    /// before patience is over, or is cancelled a second time, the connection is broken: what came
    /// of it is not known then, and completion is called at once. [main]
    bool cancel();

private:
    Q_DISABLE_COPY_MOVE(DXScriptRun)

    Outcome run();
    Outcome runOn(DabroDatabaseClient &client);
    Outcome runStatements(DabroDatabaseClient &client) const;
    static void finishTransaction(DabroDatabaseClient &client, Outcome &outcome);
    void askServerToCancel();
    void abandon();
    bool begin(DabroDatabaseClient &client);

    const Init m_init;
    Completion m_completion; // of the main thread
    std::atomic<bool> m_isCancelled = false;
    // Held while the server is asked, which may take it for ever, and when the client goes back:
    // a request that is still on its way must not meet the next borrower. Locked first.
    std::mutex m_asking;
    // Guards the client, which is there while the run borrows it, and the begin of the run.
    std::mutex m_mutex;
    DabroDatabaseClient *m_client = nullptr;
    bool m_hasBegun = false;
};
