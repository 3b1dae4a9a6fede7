// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliSignals.h"

#include "cli/CliExitStatus.h"
#include "cli/CliTerminal.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace
{

// A signal handler has no object to call.
std::array<int, 2> descriptors{-1, -1};
std::atomic<bool> isExpected = false;
static_assert(std::atomic<bool>::is_always_lock_free);

void onSignal(int signal)
{
    const int errnoBefore = errno;
    if (!isExpected.exchange(false)) {
        CliTerminal::restore();
        ::_exit(CliExitSignal + signal);
    }
    const auto number = static_cast<unsigned char>(signal);
    [[maybe_unused]] const ssize_t written = ::write(descriptors[1], &number, 1);
    errno = errnoBefore;
}

void catchSignal(int signal)
{
    struct sigaction before = {};
    ::sigaction(signal, nullptr, &before);
    if (before.sa_handler == SIG_IGN)
        return;
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    ::sigaction(signal, &action, nullptr);
}

} // namespace

CliSignals::CliSignals(const Handler &handler)
{
    if (::pipe2(descriptors.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        qFatal("There are no file descriptors left");
    m_notifier = std::make_unique<QSocketNotifier>(descriptors[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [this, handler] { takeSignals(handler); });
    std::signal(SIGPIPE, SIG_IGN);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        catchSignal(signal);
}

void CliSignals::expect()
{
    isExpected = true;
}

void CliSignals::leaveAtOnce()
{
    isExpected = false;
}

void CliSignals::takeSignals(const Handler &handler)
{
    unsigned char number = 0;
    while (::read(descriptors[0], &number, 1) == 1)
        handler(number);
}
