// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/query/DXQuerySession.h"

#include "client/DXQueryResult.h"
#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "dispatch/DXDispatch.h"

#include <QPointer>

#include <atomic>
#include <utility>

namespace
{

// A request that comes before the server has the statements is lost, so it is made again.
constexpr std::chrono::milliseconds betweenCancels(250);

// Showing many takes about as long as showing one.
constexpr std::chrono::milliseconds betweenNotices(50);

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
            if (!session || session->m_number != number)
                return;
            // A statement's notices came before it ended.
            session->tellNotices();
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

DXQuerySession::DXQuerySession(const Init &init, QObject *parent)
    : QObject(parent)
    , m_init(init)
{
    m_cancelTimer.setInterval(betweenCancels);
    connect(&m_cancelTimer, &QTimer::timeout, this, &DXQuerySession::requestCancel);
    m_patienceTimer.setSingleShot(true);
    m_patienceTimer.setInterval(m_init.patience);
    connect(&m_patienceTimer, &QTimer::timeout, this, &DXQuerySession::escalate);
    createClient();
}

DXQuerySession::~DXQuerySession()
{
    dropClient();
}

// Stops what runs and closes the connection, and waits for neither.
void DXQuerySession::dropClient()
{
    const std::shared_ptr<DabroDatabaseClient> client = std::move(m_client);
    const bool isWorking = m_run && m_run->stop() == Stage::Working;
    DXDispatch::background([client, isWorking] {
        if (!isWorking)
            return;
        client->cancelCurrentQuery(nullptr);
        client->abandonConnection();
    });
    // The request may hang as well.
    if (isWorking)
        DXDispatch::backgroundAfter(m_init.patience, [left = std::weak_ptr(client)] {
            if (const auto remaining = left.lock())
                remaining->abandonConnection();
        });
}

void DXQuerySession::createClient()
{
    m_client = m_init.details->createNewClient();
    m_notices = std::make_shared<DXNoticeQueue>();
    m_client->setNoticeHandler(
        [session = QPointer(this), notices = m_notices](const QString &text) {
            if (!notices->add(text))
                return;
            DXDispatch::main([session, notices] {
                if (session && session->m_notices == notices)
                    QTimer::singleShot(betweenNotices, session, &DXQuerySession::tellNotices);
            });
        });
}

void DXQuerySession::tellNotices()
{
    const DXNoticeQueue::Notices came = m_notices->take();
    if (!came.notices.isEmpty())
        Q_EMIT noticesReceived(came.notices, came.leftOut);
}

bool DXQuerySession::setDetails(const std::shared_ptr<DabroDBC> &details)
{
    if (isBusy() || isInTransaction())
        return false;
    // Closing says farewell to the server, which may not listen.
    DXDispatch::background([client = std::move(m_client)] { client->disconnect(); });
    m_init.details = details;
    createClient();
    forgetConnection();
    return true;
}

void DXQuerySession::leave()
{
    tellNotices();
    dropClient();
    createClient();
    if (isBusy()) {
        ++m_number;
        m_isCancelUnderWay = false;
        m_outcome = DXQueryRun::Outcome{.error = failure(tr("The connection was closed."))};
        finish();
    }
    forgetConnection();
}

void DXQuerySession::forgetConnection()
{
    m_wasConnected = false;
    m_isConnected = false;
    m_transaction.invalidate();
    m_hasFailedTransaction = false;
    m_serverVersion = QString();
    m_connectionSummary = QString();
    Q_EMIT stateChanged();
}

qint64 DXQuerySession::elapsed() const
{
    return isBusy() ? m_clock.elapsed() : m_elapsed;
}

qint64 DXQuerySession::transactionAge() const
{
    return m_transaction.isValid() ? m_transaction.elapsed() : 0;
}

void DXQuerySession::connectToServer()
{
    start({.kind = DXQueryRun::Kind::Connect});
}

std::shared_ptr<DXQueryResult> DXQuerySession::run(const QList<DXQueryDetails> &statements)
{
    if (isBusy())
        return {};
    const auto result = std::make_shared<Result>(*this);
    const auto options = m_init.details->createPreParserOptions();
    start({.kind = DXQueryRun::Kind::Statements,
           .statements = statements,
           .result = result,
           .commitsManually = m_commitsManually,
           .options = options ? *options : SQLMetadataTokenizerOptions()});
    return result;
}

void DXQuerySession::commit()
{
    start({.kind = DXQueryRun::Kind::Commit});
}

void DXQuerySession::rollback()
{
    start({.kind = DXQueryRun::Kind::RollBack});
}

void DXQuerySession::start(DXQueryRun::Init init)
{
    DX_ASSERT_MAIN();
    if (isBusy())
        return;
    init.isInTransaction = isInTransaction();
    m_run = std::make_shared<DXQueryRun>(init);
    m_clock.start();
    m_outcome.reset();
    setState(m_isConnected ? State::Running : State::Connecting);
    DXDispatch::background(
        [client = m_client, run = m_run, number = m_number, session = QPointer(this)] {
            const auto tell = [&session, number](const auto &what) {
                DXDispatch::main([session, number, what] {
                    if (session && session->m_number == number)
                        what(*session);
                });
            };
            const DXQueryRun::Outcome outcome = run->run(*client, [&tell](Stage stage) {
                tell([stage](DXQuerySession &told) { told.reached(stage); });
            });
            tell([outcome](DXQuerySession &told) { told.ended(outcome); });
        });
}

void DXQuerySession::reached(DXQueryRun::Stage stage)
{
    const bool connects = stage == Stage::Connecting;
    const bool isNew = !connects && !std::exchange(m_isConnected, true);
    m_isConnected = !connects;
    if (m_state != State::Cancelling)
        setState(connects ? State::Connecting : State::Running);
    if (isNew && std::exchange(m_wasConnected, true))
        Q_EMIT reconnected();
}

void DXQuerySession::ended(const DXQueryRun::Outcome &outcome)
{
    m_outcome = outcome;
    // A request that is still on its way must not meet what is run next.
    if (!m_isCancelUnderWay)
        finish();
}

void DXQuerySession::finish()
{
    const DXQueryRun::Outcome outcome = *std::exchange(m_outcome, std::nullopt);
    m_cancelTimer.stop();
    m_patienceTimer.stop();
    m_run.reset();
    m_elapsed = m_clock.elapsed();
    m_isConnected = outcome.isConnected;
    if (!outcome.serverVersion.isNull()) {
        m_serverVersion = outcome.serverVersion;
        m_connectionSummary = outcome.connectionSummary;
    }
    m_hasFailedTransaction = outcome.hasFailedTransaction;
    if (!outcome.isInTransaction)
        m_transaction.invalidate();
    else if (!m_transaction.isValid())
        m_transaction = m_clock;
    ++m_number;
    tellNotices();
    setState(State::Idle);
    Q_EMIT finished(outcome.error);
}

void DXQuerySession::cancel()
{
    if (!isBusy() || m_state == State::Cancelling)
        return;
    const Stage stage = m_run->stop();
    if (stage == Stage::Connecting) {
        abandon(tr("Connecting was cancelled."));
        return;
    }
    setState(State::Cancelling);
    // A run that has not begun ends by itself, before it comes to the server.
    if (stage != Stage::Working)
        return;
    m_cancelTimer.start();
    m_patienceTimer.start();
    requestCancel();
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

void DXQuerySession::escalate()
{
    QString text =
        tr("The server did not stop when it was asked to, so the connection was closed.");
    // What ran may have ended meanwhile, and only the request to stop it hang.
    QString loss = m_run->lossText();
    if (m_outcome && !m_outcome->isInTransaction)
        loss = QString();
    if (!loss.isNull())
        text += u' ' + loss;
    abandon(text);
}

// What the client that is given up still says is not waited for: it may never come.
void DXQuerySession::abandon(const QString &reason)
{
    tellNotices();
    const std::shared_ptr<DabroDatabaseClient> abandoned = std::move(m_client);
    createClient();
    ++m_number;
    m_isCancelUnderWay = false;
    m_outcome = DXQueryRun::Outcome{.error = failure(reason)};
    finish();
    // Last, so that what the break makes the client say is not taken for what the server said.
    abandoned->abandonConnection();
    // Not here, where the last to let go of it would close its tunnel and wait for that.
    DXDispatch::background([abandoned] {});
}

void DXQuerySession::setState(State state)
{
    m_state = state;
    Q_EMIT stateChanged();
}
