// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliProgram.h"

#include "cli/CliCompletion.h"
#include "cli/CliDrivers.h"
#include "cli/CliExitStatus.h"
#include "cli/CliHelp.h"
#include "cli/CliInteractive.h"
#include "cli/CliSSHOption.h"
#include "cli/CliScripts.h"
#include "cli/CliSession.h"
#include "cli/CliStatementInput.h"
#include "cli/CliTerminal.h"
#include "cli/output/CliBatchPrinter.h"
#include "cli/tree/CliTree.h"
#include "client/DabroDBC.h"
#include "client/DabroDatabaseClient.h"
#include "client/ssh/DXSSHTunnel.h"
#include "plugin/DXDriverPlugin.h"
#include "query/DXQuerySplitter.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <unistd.h>

namespace
{

QString connectionFailure(const DXError &error)
{
    const QString ssh = error.details().value(DXSSHTunnel::standardErrorKey()).toString();
    const QString description = error.description().trimmed();
    return ssh.isEmpty() ? description : description + QStringLiteral("\nssh said: ") + ssh;
}

} // namespace

CliProgram::CliProgram(const QStringList &arguments)
    : m_arguments(arguments)
    , m_signals([this](int signal) { handleSignal(signal); })
{ }

CliProgram::~CliProgram() = default;

void CliProgram::start()
{
    QString error;
    const auto options = CliOptions::parse(m_arguments, error);
    if (!options) {
        fail(CliExitUsage, error + QStringLiteral("\ndabro-cli --help tells more."));
        return;
    }
    m_options = *options;
    if (m_options.command == CliOptions::Command::Help) {
        m_console.prompt(CliHelp::text(m_options.helpTopic));
        finish(CliExitOk);
    } else if (m_options.command == CliOptions::Command::Version) {
        m_console.print(QStringLiteral("dabro-cli %1").arg(QCoreApplication::applicationVersion()));
        finish(CliExitOk);
    } else if (prepareConnection() && readStatements() && askPassword()) {
        m_session = std::make_unique<CliSession>(m_details, m_console);
        connect();
    }
}

bool CliProgram::prepareConnection()
{
    m_drivers = DXDriverLoader::load(DXDriverLoader::searchPath());
    QString reason;
    m_driver = CliDrivers::choose(m_drivers, m_options.driver, m_options.scheme, reason);
    if (!m_driver) {
        fail(CliExitNoDriver, reason);
        return false;
    }
    DXError error;
    m_details = m_driver->plugin->connectionDetailsFromString(m_options.connectionText, &error);
    if (!m_details) {
        fail(CliExitUsage, error.description());
        return false;
    }
    return m_options.ssh.isEmpty() || addTunnel();
}

bool CliProgram::addTunnel()
{
    const auto tunnel = cliSSHTunnel(m_options.ssh);
    if (!tunnel) {
        fail(CliExitUsage, QStringLiteral("\"%1\" is no SSH server: write [USER@]HOST[:PORT].")
                               .arg(m_options.ssh));
        return false;
    }
    const auto model = std::make_shared<DXSSHTunnelModel>(*tunnel);
    if (!m_options.sshIdentity.isEmpty())
        model->identityFile = QFileInfo(m_options.sshIdentity).absoluteFilePath();
    if (!m_options.sshConfig.isEmpty())
        model->configurationFile = QFileInfo(m_options.sshConfig).absoluteFilePath();
    m_details->setSshTunnelModel(model);
    return true;
}

bool CliProgram::readStatements()
{
    if (m_options.command != CliOptions::Command::Query || m_options.statements)
        return true;
    if (m_options.file.isNull() && CliTerminal::isInputTerminal())
        return true;
    QString error;
    m_options.statements = CliStatementInput::read(
        m_options.file.isNull() ? QStringLiteral("-") : m_options.file, error);
    if (!m_options.statements)
        fail(CliExitUsage, error);
    return m_options.statements.has_value();
}

bool CliProgram::askPassword()
{
    if (!m_options.asksPassword)
        return true;
    m_wasPasswordAsked = true;
    const auto password = CliTerminal::askPassword(QStringLiteral("Password: "));
    if (!password) {
        fail(CliExitNotConnected, QStringLiteral("There is no terminal to ask for the password."));
        return false;
    }
    m_details->setPassword(*password);
    return true;
}

void CliProgram::connect()
{
    m_connectTimer.startTimer();
    m_session->connect([this](const DXError &error) { connected(error); });
}

void CliProgram::connected(const DXError &error)
{
    if (error && m_session->client().connectionNeedsPassword() && !m_wasPasswordAsked) {
        m_options.asksPassword = true;
        if (const auto password = CliTerminal::askPassword(QStringLiteral("Password: "))) {
            m_wasPasswordAsked = true;
            m_details->setPassword(*password);
            m_session = std::make_unique<CliSession>(m_details, m_console);
            connect();
            return;
        }
    }
    if (error)
        fail(CliExitNotConnected, connectionFailure(error));
    else if (m_options.command == CliOptions::Command::Ping)
        ping();
    else if (m_options.command == CliOptions::Command::Script)
        printScripts();
    else if (m_options.command == CliOptions::Command::Complete)
        complete();
    else if (m_options.command == CliOptions::Command::Tree
             || m_options.command == CliOptions::Command::Search)
        showTree();
    else if (m_options.statements)
        runText(*m_options.statements);
    else
        interact();
}

void CliProgram::ping()
{
    const DabroDatabaseClient &client = m_session->client();
    const auto milliseconds = static_cast<int>(m_connectTimer.elapsedSeconds() * 1000);
    m_console.print(
        QStringLiteral("Driver:      %1 %2 (%3)")
            .arg(m_driver->metadata.displayName, m_driver->metadata.version, m_driver->path));
    m_console.print(QStringLiteral("Login:       %1").arg(m_details->description()));
    m_console.print(QStringLiteral("Connection:  %1").arg(client.connectionSummary()));
    m_console.print(QStringLiteral("Server:      %1 %2")
                        .arg(m_driver->metadata.displayName, client.serverVersion()));
    m_console.print(QStringLiteral("Connected in %1 ms.").arg(milliseconds));
    for (const DXDriverLoader::Refusal &refusal : m_drivers.refusals)
        m_console.note(QStringLiteral("Passed over %1: %2").arg(refusal.path, refusal.reason));
    finish(CliExitOk);
}

void CliProgram::printScripts()
{
    m_scripts = std::make_shared<CliScripts>(
        CliScripts::Init{.console = m_console,
                         .details = m_details,
                         .request = {.kind = m_options.operands[0],
                                     .script = m_options.script,
                                     .object = m_options.operands[1],
                                     .values = m_options.operands.sliced(2)},
                         .done = [this](int status) { finish(status); }});
    m_scripts->start();
}

void CliProgram::complete()
{
    // Without a database the server took the one that is called like its user.
    if (m_details->database().isEmpty())
        m_details->setDatabase(m_details->username());
    m_completion = std::make_unique<CliCompletion>(
        CliCompletion::Init{.console = m_console,
                            .details = m_details,
                            .prefix = m_options.operands[0],
                            .done = [this](int status) { finish(status); }});
    m_completion->start();
}

void CliProgram::showTree()
{
    m_tree =
        std::make_shared<CliTree>(CliTree::Init{.console = m_console,
                                                .details = m_details,
                                                .options = {.depth = m_options.depth,
                                                            .hasMenus = m_options.hasMenus,
                                                            .hasKinds = m_options.hasKinds},
                                                .done = [this](int status) { finish(status); }});
    if (m_options.command == CliOptions::Command::Tree)
        m_tree->printTree(m_options.operands);
    else
        m_tree->printSearch(m_options.operands[0]);
}

void CliProgram::interact()
{
    const auto promptName = [this] {
        const DabroDatabaseClient &client = m_session->client();
        const QString database = client.databaseConnectionDetails()->database();
        const QLatin1String mark(client.hasFailedTransaction() ? "!"
                                 : client.isInTransaction()    ? "*"
                                                               : "");
        return (database.isEmpty() ? m_details->username() : database) + mark;
    };
    m_interactive = std::make_unique<CliInteractive>(
        CliInteractive::Init{.console = m_console,
                             .promptName = promptName,
                             .isComplete =
                                 [this](const QString &text) {
                                     return CliStatementInput::isComplete(text, *m_details);
                                 },
                             .run = [this](const QString &text) { runText(text); },
                             .left = [this] { finish(CliExitOk); }},
        STDIN_FILENO);
    m_console.print(
        QStringLiteral("Connected to %1 %2. End statements with a semicolon; \\q leaves.")
            .arg(m_driver->metadata.displayName, m_session->client().serverVersion()));
    m_signals.expect();
    m_interactive->resume();
}

void CliProgram::runText(const QString &text)
{
    m_printer = std::make_shared<CliBatchPrinter>(
        CliBatchPrinter::Init{.console = m_console,
                              .format = m_options.format,
                              .header = m_options.header,
                              .isQuiet = m_options.isQuiet,
                              .outputFailed = [this] { m_session->cancel(); }});
    m_signals.expect();
    m_session->run(m_details->createQuerySplitter()->split(text), m_printer,
                   [this, text](const DXError &error) { ended(error, text); });
}

void CliProgram::ended(const DXError &error, const QString &text)
{
    const int failure = m_console.output().failure();
    // Whoever closed the output knows why the batch was cancelled.
    if (error && failure == 0)
        m_printer->printFailure(error, text);
    const bool isToLeave = m_signal != 0 && (!m_interactive || m_signal != SIGINT);
    if (isToLeave) {
        finish(CliExitSignal + m_signal);
    } else if (failure != 0) {
        finish(CliExitStatementFailed);
    } else if (m_interactive) {
        m_signal = 0;
        m_signals.expect();
        m_interactive->resume();
    } else {
        finish(error ? CliExitStatementFailed : CliExitOk);
    }
}

void CliProgram::handleSignal(int signal)
{
    m_signal = signal;
    if (m_session && m_session->isRunning()) {
        m_session->cancel();
    } else if (m_interactive && signal == SIGINT) {
        m_signal = 0;
        m_signals.expect();
        m_interactive->dropText();
    } else {
        finish(CliExitSignal + signal);
    }
}

void CliProgram::finish(int status)
{
    m_signals.leaveAtOnce();
    m_console.flush();
    const int failure = m_console.output().failure();
    if (failure == EPIPE) {
        status = CliExitSignal + SIGPIPE;
    } else if (failure != 0) {
        status = CliExitStatementFailed;
        m_console.error(QStringLiteral("Standard output cannot be written: %1.")
                            .arg(QString::fromLocal8Bit(std::strerror(failure))));
    }
    if (m_session)
        m_session->close([status] { QCoreApplication::exit(status); });
    else
        QCoreApplication::exit(status);
}

void CliProgram::fail(int status, const QString &text)
{
    m_console.error(text);
    finish(status);
}
