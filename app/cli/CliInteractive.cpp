// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliInteractive.h"

#include "cli/CliConsole.h"

#include <array>
#include <cerrno>
#include <unistd.h>
#include <utility>

CliInteractive::CliInteractive(const Init &init, int descriptor)
    : m_init(init)
    , m_descriptor(descriptor)
    , m_notifier(std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read))
{
    m_notifier->setEnabled(false);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [this] { readInput(); });
}

CliInteractive::~CliInteractive() = default;

void CliInteractive::ask()
{
    m_init.console.prompt(m_init.promptName()
                          + (m_text.isEmpty() ? QLatin1String("=> ") : QLatin1String("-> ")));
    m_notifier->setEnabled(true);
}

void CliInteractive::resume()
{
    for (qsizetype end = m_input.indexOf('\n'); end >= 0; end = m_input.indexOf('\n')) {
        const QString line = QString::fromLocal8Bit(m_input.first(end));
        m_input.remove(0, end + 1);
        if (!takeLine(line))
            return;
    }
    if (m_isAtEnd)
        leave();
    else
        ask();
}

// False when the next line has to wait, or nobody reads it any more.
bool CliInteractive::takeLine(const QString &line)
{
    if (m_text.isEmpty() && line.trimmed() == QLatin1String("\\q")) {
        m_init.left();
        return false;
    }
    if (m_text.isEmpty() && line.trimmed().isEmpty())
        return true;
    m_text += line + u'\n';
    if (!m_init.isComplete(m_text))
        return true;
    m_init.run(std::exchange(m_text, QString()));
    return false;
}

void CliInteractive::readInput()
{
    m_notifier->setEnabled(false);
    std::array<char, 4096> bytes;
    const ssize_t count = ::read(m_descriptor, bytes.data(), bytes.size());
    if (count > 0)
        m_input.append(bytes.data(), count);
    else if (count == 0 || (errno != EINTR && errno != EAGAIN))
        m_isAtEnd = true;
    resume();
}

void CliInteractive::leave()
{
    // The user's shell begins on a line of its own.
    m_init.console.prompt(u"\n");
    m_init.left();
}

void CliInteractive::dropText()
{
    m_text.clear();
    m_input.clear();
    m_init.console.prompt(u"\n");
    ask();
}
