// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "query/DXQueryRun.h"

#include "client/DXQueryResult.h"
#include "client/DabroDatabaseClient.h"
#include "dispatch/DXDispatch.h"
#include "query/SQLTokenizer.h"

#include <algorithm>

namespace
{

DXError failure(const QString &text)
{
    return {QString(), 0, text};
}

} // namespace

DXQueryRun::DXQueryRun(const Init &init)
    : m_init(init)
{ }

DXQueryRun::~DXQueryRun() = default;

DXQueryRun::Outcome DXQueryRun::run(DabroDatabaseClient &client,
                                    const std::function<void(Stage)> &reached)
{
    DX_ASSERT_BACKGROUND();
    Outcome outcome;
    if (prepare(client, reached, &outcome.error)) {
        work(client, &outcome.error);
        const QString loss = outcome.error && !client.isAlive() ? lossText() : QString();
        if (!loss.isNull())
            outcome.error =
                outcome.error.withDescription(outcome.error.description().trimmed() + u'\n' + loss);
    }
    outcome.isConnected = client.isAlive();
    outcome.isInTransaction = client.isInTransaction();
    outcome.hasFailedTransaction = client.hasFailedTransaction();
    outcome.serverVersion = client.serverVersion();
    outcome.connectionSummary = client.connectionSummary();
    return outcome;
}

bool DXQueryRun::prepare(DabroDatabaseClient &client, const std::function<void(Stage)> &reached,
                         DXError *error)
{
    const bool isAlive = client.isAlive();
    if (!isAlive && m_init.isInTransaction) {
        DXError::report(error,
                        failure(tr("The connection was lost, and the open transaction with it. "
                                   "Nothing was run. Run it again on a new connection.")));
        return false;
    }
    if (!isAlive && advance(Stage::Beginning, Stage::Connecting)) {
        reached(Stage::Connecting);
        client.disconnect();
        DXError refusal;
        if (!client.connect(&refusal, this)) {
            DXError::report(error, refusal ? refusal
                                           : failure(tr("The server did not answer as a server "
                                                        "should.")));
            return false;
        }
    }
    if (!advance(isAlive ? Stage::Beginning : Stage::Connecting, Stage::Working)) {
        DXError::report(error, failure(tr("Cancelled. Nothing was run.")));
        return false;
    }
    reached(Stage::Working);
    return true;
}

// False once it was stopped.
bool DXQueryRun::advance(Stage from, Stage to)
{
    return m_stage.compare_exchange_strong(from, to);
}

DXQueryRun::Stage DXQueryRun::stop()
{
    Stage stage = m_stage;
    while ((stage == Stage::Beginning || stage == Stage::Connecting)
           && !m_stage.compare_exchange_weak(stage, Stage::Stopped)) { }
    m_isStopped = true;
    return stage;
}

void DXQueryRun::work(DabroDatabaseClient &client, DXError *error)
{
    switch (m_init.kind) {
    case Kind::Connect:
        break;
    case Kind::Statements:
        if (m_init.commitsManually)
            runOneByOne(client, error);
        else
            client.executeQueryDetails(m_init.statements, *m_init.result, {}, error);
        break;
    case Kind::Commit:
        client.commitTransaction(error);
        break;
    case Kind::RollBack:
        client.rollbackTransaction(error);
        break;
    }
}

// Any statement may end the transaction, and what follows it must not run without one.
void DXQueryRun::runOneByOne(DabroDatabaseClient &client, DXError *error)
{
    DXError refusal;
    for (const DXQueryDetails &statement : m_init.statements) {
        if (m_isStopped)
            refusal = failure(tr("Cancelled. The statements from line %1 on were not run.")
                                  .arg(statement.lineNumberOffset + 1));
        if (!refusal && !client.isInTransaction())
            client.beginTransaction(&refusal);
        if (!refusal) {
            m_hasBegun = true;
            client.executeQueryDetails({statement}, *m_init.result, {}, &refusal);
        }
        if (refusal) {
            DXError::report(error, refusal);
            return;
        }
    }
}

QString DXQueryRun::lossText() const
{
    const bool isInTransaction = m_init.isInTransaction || m_hasBegun
                                 || holds({QStringLiteral("begin"), QStringLiteral("start")});
    if (m_init.kind == Kind::Connect || !isInTransaction)
        return {};
    if (m_init.kind == Kind::Commit
        || holds({QStringLiteral("commit"), QStringLiteral("end"), QStringLiteral("prepare")}))
        return tr("Whether the transaction was committed is not known.");
    return tr("The open transaction is gone with the connection.");
}

bool DXQueryRun::holds(const QStringList &firstWords) const
{
    return std::any_of(m_init.statements.begin(), m_init.statements.end(),
                       [&](const DXQueryDetails &statement) {
                           return firstWords.contains(
                               SQLTokenizer::firstWord(m_init.options, statement.targetQuery),
                               Qt::CaseInsensitive);
                       });
}
