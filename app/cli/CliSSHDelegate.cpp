// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliSSHDelegate.h"

CliSSHDelegate::CliSSHDelegate(const std::function<void(const QString &line)> &printer)
    : m_printer(printer)
{ }

QString CliSSHDelegate::sshAskpassProgram() const
{
    return qEnvironmentVariable("SSH_ASKPASS");
}

void CliSSHDelegate::sshPrinted(const QString &line)
{
    m_printer(line);
}
