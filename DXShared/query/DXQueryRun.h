// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/DXQueryDetails.h"
#include "client/ssh/DXSSHTunnel.h"
#include "core/DXError.h"
#include "core/DXGlobal.h"
#include "query/SQLMetadataTokenizerOptions.h"

#include <QCoreApplication>
#include <QList>

#include <atomic>
#include <functional>
#include <memory>

class DXQueryResult;
class DabroDatabaseClient;

/// One thing that a query session does on its connection, which is made anew before when it was
/// lost. It tells exactly how far it has come, so that whoever stops it knows what is at stake: a
/// connection with an open transaction, or one that is only being made. Made for one run().
class DXSHARED_EXPORT DXQueryRun final : public DXSSHDelegate
{
    Q_DECLARE_TR_FUNCTIONS(DXQueryRun)

public:
    enum class Kind { Connect, Statements, Commit, RollBack };
    enum class Stage {
        /// Whether the connection still is alive is not known yet; nothing was sent.
        Beginning,
        /// There is no connection yet, and so nothing to lose.
        Connecting,
        /// The server has something to do, or is about to be told.
        Working,
        /// It was stopped before the server was told anything, and never will be.
        Stopped
    };

    struct Init
    {
        Kind kind = Kind::Connect;
        QList<DXQueryDetails> statements = {};
        /// Filled by statements.
        std::shared_ptr<DXQueryResult> result = {};
        /// Whether each statement is run in a transaction, which is opened where none is.
        bool commitsManually = false;
        /// Whether a transaction was open when the server was last heard of.
        bool isInTransaction = false;
        /// How the statements are read.
        SQLMetadataTokenizerOptions options = {};
    };
    struct Outcome
    {
        DXError error = {};
        QString serverVersion = {};
        QString connectionSummary = {};
        bool isConnected = false;
        bool isInTransaction = false;
        /// Whether the server does nothing in it any more but end it.
        bool hasFailedTransaction = false;
    };

    explicit DXQueryRun(const Init &init);
    ~DXQueryRun() override;

    /// Does it; reached is told of Connecting and Working as they begin, on this thread.
    /// [background]
    Outcome run(DabroDatabaseClient &client, const std::function<void(Stage)> &reached);
    /// Ends it before its next step, and answers in which stage that was. What the server is
    /// doing goes on: the caller asks it to stop. [any]
    Stage stop();
    /// What breaking the connection under it does to a transaction, as a sentence; null when none
    /// is open. [any]
    QString lossText() const;

    bool sshShouldCancel() const override { return m_isStopped; }

private:
    Q_DISABLE_COPY_MOVE(DXQueryRun)

    bool prepare(DabroDatabaseClient &client, const std::function<void(Stage)> &reached,
                 DXError *error);
    bool advance(Stage from, Stage to);
    void work(DabroDatabaseClient &client, DXError *error);
    void runOneByOne(DabroDatabaseClient &client, DXError *error);
    bool holds(const QStringList &firstWords) const;

    const Init m_init;
    std::atomic<Stage> m_stage = Stage::Beginning;
    std::atomic<bool> m_isStopped = false;
    std::atomic<bool> m_hasBegun = false;
};
