// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliSession.h"

#include "cli/CliConsole.h"
#include "cli/output/CliBatchPrinter.h"
#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "dispatch/DXDispatch.h"

#include <utility>

namespace
{
constexpr std::chrono::milliseconds betweenCancels(250);
}

CliSession::CliSession(const std::shared_ptr<DabroDBC> &details, CliConsole &console)
    : m_console(console)
    , m_sshDelegate([&console](const QString &line) { console.note(line); })
    , m_client(details->createNewClient())
{
    m_client->setNoticeHandler(
        [&console](const QString &notice) { console.note(notice.trimmed()); });
    m_cancelTimer.setInterval(betweenCancels);
    QObject::connect(&m_cancelTimer, &QTimer::timeout, &m_cancelTimer, [this] { requestCancel(); });
}

CliSession::~CliSession() = default;

void CliSession::connect(const Done &done)
{
    DX_ASSERT_MAIN();
    DXDispatch::background([this, done] {
        DXError error;
        if (!m_client->connect(&error, &m_sshDelegate) && !error)
            error = DXError(QString(), 0,
                            QStringLiteral("The server did not answer as a server should."));
        DXDispatch::main([done, error] { done(error); });
    });
}

bool CliSession::connectAgain(DXError *error)
{
    m_client->disconnect();
    if (!m_client->connect(error, &m_sshDelegate))
        return false;
    m_console.note(u"The connection was lost and is made anew; its settings are gone.");
    return true;
}

void CliSession::run(const QList<DXQueryDetails> &statements,
                     const std::shared_ptr<CliBatchPrinter> &printer, const Done &done)
{
    DX_ASSERT_MAIN();
    m_isRunning = true;
    m_isCancelled = false;
    m_hasBatchEnded = false;
    DXDispatch::background([this, statements, printer, done] {
        DXError error;
        if (m_client->isAlive() || connectAgain(&error))
            m_client->executeQueryDetails(
                statements, *printer, [&printer] { printer->statementFinished(); }, &error);
        DXDispatch::main([this, done, error] {
            m_hasBatchEnded = true;
            m_ended = [done, error] { done(error); };
            ended();
        });
    });
}

// A request that is still on its way must not meet the next batch.
void CliSession::ended()
{
    if (!m_hasBatchEnded || m_isCancelUnderWay)
        return;
    m_cancelTimer.stop();
    m_isRunning = false;
    std::exchange(m_ended, nullptr)();
}

void CliSession::cancel()
{
    DXDispatch::main([this] {
        if (!m_isRunning || std::exchange(m_isCancelled, true))
            return;
        m_cancelTimer.start();
        requestCancel();
    });
}

void CliSession::requestCancel()
{
    if (m_hasBatchEnded || std::exchange(m_isCancelUnderWay, true))
        return;
    DXDispatch::background([this] {
        m_client->cancelCurrentQuery(nullptr);
        DXDispatch::main([this] {
            m_isCancelUnderWay = false;
            if (m_hasBatchEnded)
                ended();
        });
    });
}

void CliSession::close(const std::function<void()> &done)
{
    DX_ASSERT_MAIN();
    DXDispatch::background([this, done] {
        m_client->disconnect();
        DXDispatch::main(done);
    });
}
