// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/ssh/DXSSHTunnel.h"

#include "client/ssh/DXSSHCommand.h"
#include "client/ssh/DXSSHProcess.h"
#include "dispatch/DXDispatch.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <cerrno>
#include <mutex>
#include <optional>
#include <system_error>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

struct DXSSHTunnel::Private
{
    Private(std::unique_ptr<DXSSHProcess> runningProcess, quint16 port)
        : process(std::move(runningProcess))
        , localPort(port)
    { }

    const std::unique_ptr<DXSSHProcess> process;
    const quint16 localPort;
};

namespace
{

const auto errorDomain = "client.sshTunnel.open"_L1;
constexpr std::chrono::milliseconds cancelInterval(50);
// Somebody may take the port between our choosing it and ssh's binding it.
constexpr int portAttempts = 5;
constexpr qsizetype shownLines = 3;

// A port of 127.0.0.1 that nobody listens on; 0, with errno set, when there is none.
quint16 freePort()
{
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (listener < 0)
        return 0;
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto *const plain = reinterpret_cast<sockaddr *>(&address);
    const bool ok = bind(listener, plain, size) == 0 && getsockname(listener, plain, &size) == 0;
    const int reason = errno;
    close(listener);
    errno = reason;
    return ok ? ntohs(address.sin_port) : quint16(0);
}

QString textOf(int systemError)
{
    return QString::fromStdString(std::system_category().message(systemError));
}

QString lineOf(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes).trimmed();
}

// The last lines of what ssh printed that tell why it failed, without frames and old news.
QString reasonIn(const QByteArray &standardError)
{
    QStringList lines;
    for (const QByteArray &bytes : standardError.split('\n')) {
        const QString line = lineOf(bytes);
        const bool isFrame =
            std::all_of(line.begin(), line.end(), [](QChar c) { return c == u'@' || c.isSpace(); });
        if (!isFrame && !line.startsWith(u"Warning: Permanently added"))
            lines += line;
    }
    return lines.mid(std::max<qsizetype>(lines.size() - shownLines, 0)).join(u'\n');
}

QString reasonOf(const DXSSHProcess &process)
{
    const DXSSHProcess::Ending ending = process.ending();
    const QString said = reasonIn(process.standardError());
    if (!said.isEmpty())
        return said;
    return ending.signal != 0 ? u"ssh was ended by signal %1."_s.arg(ending.signal)
                              : u"ssh ended with status %1 and no message."_s.arg(ending.exitCode);
}

DXError errorOf(const DXSSHProcess &process, const QString &host)
{
    const DXSSHProcess::Ending ending = process.ending();
    if (ending.systemError != 0)
        return {errorDomain, ending.systemError,
                u"The program ssh could not be started: %1."_s.arg(textOf(ending.systemError))};
    return {errorDomain, ending.exitCode,
            u"The SSH tunnel through %1 could not be opened.\n%2"_s.arg(host, reasonOf(process))};
}

// Returns once the tunnel carries connections, ended, or the delegate gives up; then with error.
DXError waitUntilOpen(DXSSHProcess &process, const QString &host, DXSSHDelegate &delegate)
{
    for (;;) {
        const DXSSHProcess::State state = process.waitWhileOpening(cancelInterval);
        for (const QByteArray &line : process.takeOpeningLines())
            delegate.sshPrinted(lineOf(line));
        if (state == DXSSHProcess::State::Open)
            return {};
        if (state == DXSSHProcess::State::Ended)
            return errorOf(process, host);
        if (delegate.sshShouldCancel())
            return {errorDomain, ECANCELED, u"Opening the SSH tunnel was cancelled."_s};
    }
}

// As ssh words it when -L names a port that is in use.
bool couldNotListen(const DXSSHProcess &process, quint16 port)
{
    return process.standardError().contains("cannot listen to port: " + QByteArray::number(port));
}

struct Askpass
{
    std::mutex mutex;
    QString program;
    QByteArrayList environment;
};

Askpass &defaultAskpass()
{
    static Askpass askpass;
    return askpass;
}

} // namespace

DXSSHDelegate::~DXSSHDelegate() = default;

void DXSSHDelegate::sshPrinted(const QString &) { }

void DXSSHDelegate::setDefaultAskpass(const QString &program, const QByteArrayList &environment)
{
    Askpass &askpass = defaultAskpass();
    const std::lock_guard lock(askpass.mutex);
    askpass.program = program;
    askpass.environment = environment;
}

QString DXSSHDelegate::sshAskpassProgram() const
{
    Askpass &askpass = defaultAskpass();
    const std::lock_guard lock(askpass.mutex);
    return askpass.program;
}

QByteArrayList DXSSHDelegate::sshAskpassEnvironment() const
{
    Askpass &askpass = defaultAskpass();
    const std::lock_guard lock(askpass.mutex);
    return askpass.environment;
}

std::unique_ptr<DXSSHTunnel> DXSSHTunnel::open(const DXSSHTunnelModel &model,
                                               const QString &targetHost, quint16 targetPort,
                                               DXSSHDelegate *delegate, DXError *error)
{
    DX_ASSERT_BACKGROUND();
    DXSSHDelegate silent;
    DXSSHDelegate &asked = delegate ? *delegate : silent;
    for (int attempt = 1;; ++attempt) {
        const quint16 port = freePort();
        if (port == 0) {
            DXError::report(
                error, {errorDomain, errno,
                        u"No local port is free for the SSH tunnel: %1."_s.arg(textOf(errno))});
            return nullptr;
        }
        const std::optional<DXSSHProcess::Command> command =
            DXSSHCommand::make({.model = model,
                                .targetHost = targetHost,
                                .targetPort = targetPort,
                                .localPort = port,
                                .askpassProgram = asked.sshAskpassProgram(),
                                .askpassEnvironment = asked.sshAskpassEnvironment()},
                               error);
        if (!command)
            return nullptr;
        auto process = std::make_unique<DXSSHProcess>(*command);
        const DXError failure = waitUntilOpen(*process, model.host, asked);
        if (!failure)
            return std::unique_ptr<DXSSHTunnel>(
                new DXSSHTunnel(std::make_unique<Private>(std::move(process), port)));
        if (attempt == portAttempts || !couldNotListen(*process, port)) {
            DXError::report(error, failure);
            return nullptr;
        }
    }
}

DXSSHTunnel::DXSSHTunnel(std::unique_ptr<Private> p)
    : d(std::move(p))
{ }

DXSSHTunnel::~DXSSHTunnel() = default;

quint16 DXSSHTunnel::localPort() const
{
    return d->localPort;
}

bool DXSSHTunnel::isOpen() const
{
    return d->process->state() == DXSSHProcess::State::Open;
}

QString DXSSHTunnel::endingWithin(std::chrono::milliseconds limit) const
{
    const bool hasEnded = d->process->waitForEnd(limit);
    return hasEnded ? reasonOf(*d->process) : QString();
}

QString DXSSHTunnel::standardErrorKey()
{
    return DXProductName(u"sshStandardError");
}

QString DXSSHTunnel::standardError() const
{
    return QString::fromUtf8(d->process->standardError()).remove(u'\r');
}

void DXSSHTunnel::disconnect()
{
    d->process->end();
}
