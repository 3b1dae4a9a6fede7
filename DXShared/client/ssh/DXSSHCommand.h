// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/ssh/DXSSHProcess.h"
#include "client/ssh/DXSSHTunnelModel.h"
#include "core/DXError.h"
#include "core/DXGlobal.h"

#include <QByteArrayList>

#include <optional>

/// How the system's OpenSSH client is called to keep a tunnel (ssh(1), ssh_config(5)).
namespace DXSSHCommand
{

struct Request
{
    const DXSSHTunnelModel &model;
    /// A name or an address as the SSH server knows it.
    QString targetHost;
    quint16 targetPort = 0;
    /// The port of 127.0.0.1 that is forwarded.
    quint16 localPort = 0;
    /// What asks the user; empty when nothing may be asked.
    QString askpassProgram = {};
    /// Entries of its environment, as NAME=value.
    QByteArrayList askpassEnvironment = {};
};

/// The command for request. Nothing, with error set, when a field holds what no host or user is
/// called, its key cannot be read or no ssh is installed: what reaches ssh can neither be taken for
/// an option nor be run by the shell that ssh starts for a user's ProxyCommand. [any]
std::optional<DXSSHProcess::Command> make(const Request &request, DXError *error);

} // namespace DXSSHCommand
