// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/ssh/DXSSHTunnel.h"

#include <functional>

/// What a tunnel may ask in a terminal: nothing but through the user's own SSH_ASKPASS program.
class CliSSHDelegate final : public DXSSHDelegate
{
public:
    /// printer is called with each line that ssh prints, on the connecting thread.
    explicit CliSSHDelegate(const std::function<void(const QString &line)> &printer);

    QString sshAskpassProgram() const override;
    void sshPrinted(const QString &line) override;

private:
    const std::function<void(const QString &line)> m_printer;
};
