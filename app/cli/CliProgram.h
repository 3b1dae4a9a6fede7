// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/CliConsole.h"
#include "cli/CliOptions.h"
#include "cli/CliSignals.h"
#include "core/DXError.h"
#include "core/MachTimer.h"
#include "plugin/DXDriverLoader.h"

#include <QStringList>

#include <memory>

class CliCompletion;
class CliInteractive;
class CliScripts;
class CliSession;
class CliTree;
class DabroDBC;

/// The course of the program, from its arguments to its exit status. [main]
class CliProgram final
{
public:
    /// arguments are those behind the program's name.
    explicit CliProgram(const QStringList &arguments);
    ~CliProgram();

    /// Begins. It ends by leaving the event loop, which has to run, with the status.
    void start();

private:
    Q_DISABLE_COPY_MOVE(CliProgram)

    bool prepareConnection();
    bool addTunnel();
    bool readStatements();
    bool askPassword();
    void connect();
    void connected(const DXError &error);
    void ping();
    void printScripts();
    void complete();
    void showTree();
    void interact();
    void runText(const QString &text);
    void ended(const DXError &error, const QString &text);
    void handleSignal(int signal);
    void finish(int status);
    void fail(int status, const QString &text);

    const QStringList m_arguments;
    CliConsole m_console;
    CliSignals m_signals;
    CliOptions m_options;
    DXDriverLoader::Report m_drivers;
    const DXDriverLoader::Driver *m_driver = nullptr;
    std::shared_ptr<DabroDBC> m_details;
    std::unique_ptr<CliSession> m_session;
    std::unique_ptr<CliInteractive> m_interactive;
    std::shared_ptr<CliScripts> m_scripts;
    std::unique_ptr<CliCompletion> m_completion;
    std::shared_ptr<CliTree> m_tree;
    std::shared_ptr<class CliBatchPrinter> m_printer;
    MachTimer m_connectTimer;
    bool m_wasPasswordAsked = false;
    // The signal that came last; 0 when none did.
    int m_signal = 0;
};
