// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/query/DXQuerySession.h"

#include "client/DXQueryResult.h"
#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "client/ssh/DXSSHTunnel.h"
#include "dispatch/DXDispatch.h"

#include <QPointer>

#include <atomic>
#include <utility>

namespace
{

// A request that comes before the server has the statements is lost, so it is made again.
constexpr std::chrono::milliseconds betweenCancels(250);

DXError failure(const QString &text)
{
    return {QString(), 0, text};
}

} // namespace

/// Tells its session of each change, but once until the session has looked.
class DXQuerySession::Result final : public DXQueryResult
{
public:
    explicit Result(DXQuerySession &session)
        : m_session(&session)
        , m_number(session.m_number)
    { }

    void setResultSets(const ResultSets &resultSets) override
    {
        DXQueryResult::setResultSets(resultSets);
        m_hasAnnouncedRows = false;
        announce();
    }
    // The first rows of a statement are worth a word; who shows them looks for the others.
    void incrementTotalResultCountBy(qint64 count) override
    {
        DXQueryResult::incrementTotalResultCountBy(count);
        if (count > 0 && !std::exchange(m_hasAnnouncedRows, true))
            announce();
    }
    void incrementMessagesCount(qint64 count) override
    {
        DXQueryResult::incrementMessagesCount(count);
        announce();
    }

private:
    void announce()
    {
        if (m_isAnnounced->exchange(true))
            return;
        DXDispatch::main([isAnnounced = m_isAnnounced, session = m_session, number = m_number] {
            *isAnnounced = false;
            if (session && session->m_number == number)
                Q_EMIT session->progressed();
        });
    }

    const QPointer<DXQuerySession> m_session;
    const quint64 m_number;
    // Of the executing thread.
    bool m_hasAnnouncedRows = false;
    const std::shared_ptr<std::atomic<bool>> m_isAnnounced =
        std::make_shared<std::atomic<bool>>(false);
};

/// Lets a tunnel that is being opened be given up.
class DXQuerySession::Tunnelling final : public DXSSHDelegate
{
public:
    bool sshShouldCancel() const override { return m_isGivenUp; }
    void giveUp() { m_isGivenUp = true; }

private:
    std::atomic<bool> m_isGivenUp = false;
};

DXQuerySession::DXQuerySession(const Init &init, QObject *parent)
    : QObject(parent)
    , m_init(init)
{
    m_cancelTimer.setInterval(betweenCancels);
    connect(&m_cancelTimer, &QTimer::timeout, this, &DXQuerySession::requestCancel);
    m_patienceTimer.setSingleShot(true);
    m_patienceTimer.setInterval(m_init.patience);
    connect(&m_patienceTimer, &QTimer::timeout, this, &DXQuerySession::abandon);
    createClient();
}

DXQuerySession::~DXQuerySession()
{
    m_tunnelling->giveUp();
    const bool isBusy = m_state == State::Running || m_state == State::Cancelling;
    DXDispatch::background([client = std::move(m_client), isBusy] {
        if (isBusy) {
            client->cancelCurrentQuery(nullptr);
            client->abandonConnection();
        }
    });
}

void DXQuerySession::createClient()
{
    m_client = m_init.details->createNewClient();
    m_tunnelling = std::make_shared<Tunnelling>();
    m_client->setNoticeHandler([session = QPointer(this)](const QString &notice) {
        DXDispatch::main([session, notice] {
            if (session)
                Q_EMIT session->noticeReceived(notice);
        });
    });
}

bool DXQuerySession::setDetails(const std::shared_ptr<DabroDBC> &details)
{
    if (isBusy() || isInTransaction())
        return false;
    // Closing says farewell to the server, which may not listen.
    DXDispatch::background([client = std::move(m_client)] { client->disconnect(); });
    m_init.details = details;
    m_wasConnected = false;
    m_serverVersion = QString();
    m_connectionSummary = QString();
    createClient();
    Q_EMIT stateChanged();
    return true;
}

qint64 DXQuerySession::elapsed() const
{
    return isBusy() && m_run.isValid() ? m_run.elapsed() : m_elapsed;
}

qint64 DXQuerySession::transactionAge() const
{
    return m_transaction.isValid() ? m_transaction.elapsed() : 0;
}

void DXQuerySession::connectToServer()
{
    start([](DabroDatabaseClient &, DXError *) {});
}

std::shared_ptr<DXQueryResult> DXQuerySession::run(const QList<DXQueryDetails> &statements)
{
    if (isBusy())
        return {};
    const auto result = std::make_shared<Result>(*this);
    start([statements, result, begins = m_commitsManually](DabroDatabaseClient &client,
                                                           DXError *error) {
        DXError refusal;
        if (begins && !client.isInTransaction())
            client.beginTransaction(&refusal);
        if (refusal)
            DXError::report(error, refusal);
        else
            client.executeQueryDetails(statements, *result, {}, error);
    });
    return result;
}

void DXQuerySession::commit()
{
    start([](DabroDatabaseClient &client, DXError *error) { client.commitTransaction(error); });
}

void DXQuerySession::rollback()
{
    start([](DabroDatabaseClient &client, DXError *error) { client.rollbackTransaction(error); });
}

bool DXQuerySession::start(const Work &work)
{
    DX_ASSERT_MAIN();
    if (isBusy())
        return false;
    m_run.start();
    m_outcome.reset();
    setState(State::Connecting);
    DXDispatch::background([client = m_client, tunnelling = m_tunnelling, work, number = m_number,
                            transaction = isInTransaction(), session = QPointer(this)] {
        const auto tell = [&session, number](const auto &what) {
            DXDispatch::main([session, number, what] {
                if (session && session->m_number == number)
                    what(*session);
            });
        };
        Outcome outcome;
        const bool isAlive = client->isAlive();
        if (!isAlive && transaction)
            outcome.error = failure(tr("The connection was lost, and the open transaction with it. "
                                       "Nothing was run. Run it again on a new connection."));
        else if (!isAlive)
            client->disconnect();
        if (!isAlive && !transaction && !client->connect(&outcome.error, tunnelling.get())
            && !outcome.error)
            outcome.error = failure(tr("The server did not answer as a PostgreSQL server should."));
        if (!outcome.error) {
            tell([isAlive](DXQuerySession &told) { told.connected(!isAlive); });
            work(*client, &outcome.error);
        }
        if (outcome.error && transaction && isAlive && !client->isAlive())
            outcome.error = outcome.error.withDescription(
                tr("%1\nThe open transaction is gone with the connection.")
                    .arg(outcome.error.description().trimmed()));
        outcome.isInTransaction = client->isInTransaction();
        outcome.serverVersion = client->serverVersion();
        outcome.connectionSummary = client->connectionSummary();
        tell([outcome](DXQuerySession &told) { told.ended(outcome); });
    });
    return true;
}

void DXQuerySession::connected(bool again)
{
    if (m_state == State::Connecting)
        setState(State::Running);
    if (again && std::exchange(m_wasConnected, true))
        Q_EMIT reconnected();
}

void DXQuerySession::ended(const Outcome &outcome)
{
    m_outcome = outcome;
    // A request that is still on its way must not meet what is run next.
    if (!m_isCancelUnderWay)
        finish();
}

void DXQuerySession::finish()
{
    const Outcome outcome = *std::exchange(m_outcome, std::nullopt);
    m_cancelTimer.stop();
    m_patienceTimer.stop();
    m_elapsed = m_run.elapsed();
    if (!outcome.serverVersion.isNull()) {
        m_serverVersion = outcome.serverVersion;
        m_connectionSummary = outcome.connectionSummary;
    }
    if (!outcome.isInTransaction)
        m_transaction.invalidate();
    else if (!m_transaction.isValid())
        m_transaction = m_run;
    ++m_number;
    setState(State::Idle);
    Q_EMIT finished(outcome.error);
}

void DXQuerySession::cancel()
{
    if (m_state == State::Connecting) {
        abandon();
    } else if (m_state == State::Running) {
        setState(State::Cancelling);
        m_cancelTimer.start();
        m_patienceTimer.start();
        requestCancel();
    }
}

void DXQuerySession::requestCancel()
{
    if (std::exchange(m_isCancelUnderWay, true))
        return;
    DXDispatch::background([client = m_client, number = m_number, session = QPointer(this)] {
        client->cancelCurrentQuery(nullptr);
        DXDispatch::main([session, number] {
            if (!session || session->m_number != number)
                return;
            session->m_isCancelUnderWay = false;
            if (session->m_outcome)
                session->finish();
        });
    });
}

// What the client that is given up still says is not waited for: it may never come.
void DXQuerySession::abandon()
{
    const bool wasConnecting = m_state == State::Connecting;
    const std::shared_ptr<DabroDatabaseClient> abandoned = std::move(m_client);
    m_tunnelling->giveUp();
    createClient();
    ++m_number;
    m_isCancelUnderWay = false;
    m_outcome = Outcome{
        .error = failure(wasConnecting ? tr("Connecting was cancelled.")
                                       : tr("The server did not stop when it was asked to, so "
                                            "the connection was closed."))};
    finish();
    // Last, so that what the break makes the client say is not taken for what the server said.
    abandoned->abandonConnection();
}

void DXQuerySession::setState(State state)
{
    m_state = state;
    Q_EMIT stateChanged();
}
