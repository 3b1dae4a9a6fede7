// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

/// Ctrl-C and the other signals that ask the program to end (SIGINT, SIGTERM, SIGHUP). What was
/// ignored when the program started stays so. Writing to a closed pipe gives an error in place of a
/// signal. One object a process. [main]
class CliSignals final
{
public:
    /// Told of a signal from the event loop.
    using Handler = std::function<void(int signal)>;

    /// Until expect() is called a signal ends the process at once, with the status that shells give
    /// it.
    explicit CliSignals(const Handler &handler);

    /// The next signal goes to the handler; the one after that ends the process at once.
    void expect();
    /// Signals end the process at once.
    void leaveAtOnce();

private:
    Q_DISABLE_COPY_MOVE(CliSignals)

    void takeSignals(const Handler &handler);

    std::unique_ptr<QSocketNotifier> m_notifier;
};
