// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliTerminal.h"

#include <QByteArray>
#include <QScopeGuard>

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace
{

// Written before hidingDescriptor announces them to the signal handler.
termios shownMode;
std::atomic<int> hidingDescriptor = -1;
static_assert(std::atomic<int>::is_always_lock_free);

bool hideInput(int terminal)
{
    termios mode;
    if (::tcgetattr(terminal, &mode) != 0)
        return false;
    shownMode = mode;
    hidingDescriptor = terminal;
    mode.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    return ::tcsetattr(terminal, TCSAFLUSH, &mode) == 0;
}

// One byte at a time: what is typed behind the line is for somebody else.
std::optional<QByteArray> readLine(int terminal)
{
    QByteArray line;
    for (;;) {
        char character = 0;
        const ssize_t count = ::read(terminal, &character, 1);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return std::nullopt;
        if (character == '\n')
            return line;
        line += character;
    }
}

void writeAll(int terminal, const QByteArray &text)
{
    // A terminal takes this much at once; if it does not, the question is incomplete, no more.
    [[maybe_unused]] const ssize_t written =
        ::write(terminal, text.constData(), static_cast<size_t>(text.size()));
}

} // namespace

bool CliTerminal::isInputTerminal()
{
    return ::isatty(STDIN_FILENO) == 1;
}

std::optional<QString> CliTerminal::askPassword(const QString &prompt)
{
    const int terminal = ::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY);
    if (terminal < 0)
        return std::nullopt;
    const auto close = qScopeGuard([terminal] {
        restore();
        ::close(terminal);
    });
    if (!hideInput(terminal))
        return std::nullopt;
    writeAll(terminal, prompt.toLocal8Bit());
    const auto line = readLine(terminal);
    writeAll(terminal, "\n");
    return line ? std::optional(QString::fromLocal8Bit(*line)) : std::nullopt;
}

void CliTerminal::restore()
{
    const int terminal = hidingDescriptor.exchange(-1);
    if (terminal >= 0)
        ::tcsetattr(terminal, TCSAFLUSH, &shownMode);
}
