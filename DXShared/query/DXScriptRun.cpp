// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "query/DXScriptRun.h"

#include "client/DXQueryResult.h"
#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "client/DabroDatabaseConnectionPool.h"
#include "core/DXLogHelper.h"
#include "dispatch/DXDispatch.h"

#include <QScopeGuard>

#include <chrono>
#include <utility>

namespace
{

// A request that reaches the server between two statements stops none.
constexpr std::chrono::milliseconds cancelInterval(250);

} // namespace

DXScriptRun::DXScriptRun(const Init &init)
    : m_init(init)
{ }

DXScriptRun::~DXScriptRun() = default;

void DXScriptRun::start(const Completion &completion)
{
    DX_ASSERT_MAIN();
    m_completion = completion;
    DXDispatch::background([self = shared_from_this()] {
        const Outcome outcome = self->run();
        DXDispatch::main([self, outcome] {
            if (const Completion told = std::exchange(self->m_completion, {}))
                told(outcome);
        });
    });
}

bool DXScriptRun::cancel()
{
    DX_ASSERT_MAIN();
    if (m_isCancelled.exchange(true)) {
        abandon();
        return false;
    }
    {
        const std::lock_guard lock(m_mutex);
        if (!m_hasBegun) {
            m_completion = {};
            return true;
        }
    }
    DXDispatch::background([self = shared_from_this()] { self->askServerToCancel(); });
    DXDispatch::backgroundAfter(m_init.patience, [self = shared_from_this()] {
        DXDispatch::main([self] { self->abandon(); });
    });
    return false;
}

// What the client still says is not waited for: it may never come.
void DXScriptRun::abandon()
{
    {
        const std::lock_guard lock(m_mutex);
        if (!m_client)
            return;
        m_client->abandonConnection();
    }
    if (const Completion told = std::exchange(m_completion, {}))
        told({.error = {QString(), 0,
                        tr("The server did not stop when it was asked to, so the connection was "
                           "closed.")},
              .changes = Changes::Unknown,
              .isCancelled = true});
}

void DXScriptRun::askServerToCancel()
{
    const std::lock_guard asking(m_asking);
    DabroDatabaseClient *const client = [this] {
        const std::lock_guard lock(m_mutex);
        return m_client;
    }();
    if (!client)
        return;
    DXError error;
    if (!client->cancelCurrentQuery(&error) && error)
        DXLog(QStringLiteral("Cancel failed: %1").arg(error.description()));
    DXDispatch::backgroundAfter(cancelInterval,
                                [self = shared_from_this()] { self->askServerToCancel(); });
}

bool DXScriptRun::begin(DabroDatabaseClient &client)
{
    const std::lock_guard lock(m_mutex);
    if (m_isCancelled)
        return false;
    m_client = &client;
    m_hasBegun = true;
    return true;
}

DXScriptRun::Outcome DXScriptRun::run()
{
    if (m_init.preparation)
        m_init.preparation();
    Outcome outcome;
    DXError failure;
    DabroDatabaseConnectionPool::executeQuery(
        [&](DabroDatabaseClient &client, DXError *error) {
            if (!begin(client))
                return;
            const auto giveBack = qScopeGuard([this] {
                const std::lock_guard asking(m_asking);
                const std::lock_guard lock(m_mutex);
                m_client = nullptr;
            });
            outcome = runOn(client);
            if (outcome.error)
                DXError::report(error, outcome.error);
        },
        *m_init.connectionDetails, &failure);
    outcome.error = failure;
    return outcome;
}

DXScriptRun::Outcome DXScriptRun::runOn(DabroDatabaseClient &client)
{
    if (m_init.transaction == Transaction::No)
        return runStatements(client);
    Outcome outcome;
    client.beginTransaction(&outcome.error);
    if (outcome.error)
        return outcome;
    outcome = runStatements(client);
    // Otherwise the script has ended it itself.
    if (client.isInTransaction())
        finishTransaction(client, outcome);
    return outcome;
}

DXScriptRun::Outcome DXScriptRun::runStatements(DabroDatabaseClient &client) const
{
    Outcome outcome;
    for (qsizetype index = 0; index < m_init.statements.size(); ++index) {
        outcome.isCancelled = m_isCancelled;
        if (outcome.isCancelled)
            return outcome;
        const bool isInTransaction = client.isInTransaction();
        DXQueryResult result;
        client.executeQueryDetails({m_init.statements[index]}, result, {}, &outcome.error);
        if (outcome.error) {
            outcome.failedStatement = index;
            outcome.isCancelled = m_isCancelled;
            if (!isInTransaction && !client.isAlive())
                outcome.changes = Changes::Unknown;
            return outcome;
        }
        if (!client.isInTransaction())
            outcome.changes = Changes::Some;
    }
    return outcome;
}

void DXScriptRun::finishTransaction(DabroDatabaseClient &client, Outcome &outcome)
{
    if (outcome.isSuccess()) {
        client.commitTransaction(&outcome.error);
        if (outcome.error && !client.isAlive())
            outcome.changes = Changes::Unknown;
    } else {
        DXError error;
        client.rollbackTransaction(&error);
        // The server rolls back as well once the pool has closed such a connection.
        if (error)
            DXLog(QStringLiteral("Rolling back failed: %1").arg(error.description()));
    }
}
