// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/output/CliOutput.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace
{
constexpr qsizetype bufferSize = 64 * 1024;
}

CliOutput::CliOutput(int descriptor)
    : m_descriptor(descriptor)
    , m_isTerminal(::isatty(descriptor) == 1)
{ }

void CliOutput::write(QByteArrayView text)
{
    if (m_failure != 0)
        return;
    m_buffer.append(text);
    if (m_buffer.size() >= bufferSize)
        flush();
}

void CliOutput::flush()
{
    const char *at = m_buffer.constData();
    const char *const end = at + m_buffer.size();
    while (at != end && m_failure == 0) {
        const ssize_t written = ::write(m_descriptor, at, static_cast<size_t>(end - at));
        if (written >= 0) {
            at += written;
        } else if (errno == EAGAIN) {
            // Whoever gave us the descriptor made it non-blocking.
            pollfd writable{m_descriptor, POLLOUT, 0};
            ::poll(&writable, 1, -1);
        } else if (errno != EINTR) {
            m_failure = errno;
        }
    }
    m_buffer.resize(0);
}
