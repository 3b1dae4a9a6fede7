// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliConsole.h"

#include "cli/CliText.h"

#include <unistd.h>

namespace
{

bool wantsColor()
{
    return ::isatty(STDERR_FILENO) == 1 && qEnvironmentVariableIsEmpty("NO_COLOR")
           && qgetenv("TERM") != "dumb";
}

} // namespace

CliConsole::CliConsole()
    : CliConsole(STDOUT_FILENO, STDERR_FILENO, wantsColor())
{ }

CliConsole::CliConsole(int outputDescriptor, int errorDescriptor, bool hasColor)
    : m_output(outputDescriptor)
    , m_error(errorDescriptor)
    , m_hasColor(hasColor)
{ }

void CliConsole::note(QStringView text)
{
    writeError(CliText::printableLines(text));
}

void CliConsole::error(QStringView text)
{
    const QString line = CliText::printableLines(text);
    writeError(m_hasColor ? QStringLiteral("\x1b[31m%1\x1b[0m").arg(line) : line);
}

void CliConsole::writeError(const QString &text)
{
    m_output.flush();
    m_error.write((text + u'\n').toUtf8());
    m_error.flush();
}

void CliConsole::print(QStringView text)
{
    m_output.write((CliText::printableLines(text) + u'\n').toUtf8());
}

void CliConsole::prompt(QStringView text)
{
    m_output.write(CliText::printableLines(text).toUtf8());
    m_output.flush();
}

void CliConsole::flush()
{
    m_output.flush();
}
