// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/CliSSHDelegate.h"
#include "client/DXQueryDetails.h"
#include "core/DXError.h"

#include <QList>
#include <QTimer>

#include <functional>
#include <memory>

class CliBatchPrinter;
class CliConsole;
class DabroDBC;
class DabroDatabaseClient;

/// The program's one connection: its work runs in the background, one piece at a time, and answers
/// on the main thread. [main], unless an operation says otherwise.
class CliSession final
{
public:
    /// Empty when all went well.
    using Done = std::function<void(const DXError &error)>;

    /// Notices of the server and lines of ssh go to console, which has to outlive the session.
    CliSession(const std::shared_ptr<DabroDBC> &details, CliConsole &console);
    ~CliSession();

    void connect(const Done &done);
    /// Runs the statements as one batch; a connection that broke while it was idle is made anew.
    void run(const QList<DXQueryDetails> &statements,
             const std::shared_ptr<CliBatchPrinter> &printer, const Done &done);
    /// Cancels what run() runs, again and again until it ends: the first request may come before
    /// the server has the statements. [any]
    void cancel();
    /// Closes the connection.
    void close(const std::function<void()> &done);

    bool isRunning() const { return m_isRunning; }
    /// The client, while nothing runs.
    const DabroDatabaseClient &client() const { return *m_client; }

private:
    Q_DISABLE_COPY_MOVE(CliSession)

    void requestCancel();
    void ended();
    bool connectAgain(DXError *error);

    CliConsole &m_console;
    CliSSHDelegate m_sshDelegate;
    const std::unique_ptr<DabroDatabaseClient> m_client;
    bool m_isRunning = false;
    bool m_isCancelled = false;
    bool m_isCancelUnderWay = false;
    bool m_hasBatchEnded = false;
    std::function<void()> m_ended;
    QTimer m_cancelTimer;
};
