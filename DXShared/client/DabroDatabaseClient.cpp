// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DabroDatabaseClient.h"

#include "client/DabroDBC.h"
#include "client/ssh/DXSSHTunnel.h"

using namespace Qt::StringLiterals;

DabroDatabaseClient::DabroDatabaseClient() = default;
DabroDatabaseClient::~DabroDatabaseClient() = default;

bool DabroDatabaseClient::hasFailedTransaction() const
{
    return false;
}

QString DabroDatabaseClient::connectionSummary() const
{
    return {};
}

bool DabroDatabaseClient::connectionNeedsPassword() const
{
    return false;
}

std::unique_ptr<DXSSHTunnel> DabroDatabaseClient::initializeSSH(DXSSHDelegate *sshDelegate,
                                                                DXError *error) const
{
    const auto model = m_details ? m_details->sshTunnelModel() : nullptr;
    if (!model) {
        DXError::report(error, {u"client.sshTunnel.open"_s, 0,
                                u"The connection has no SSH tunnel configured."_s});
        return nullptr;
    }
    // Without a host the server runs where the tunnel ends.
    const QString host = m_details->host().isEmpty() ? u"localhost"_s : m_details->host();
    return DXSSHTunnel::open(*model, host, m_details->port(), sshDelegate, error);
}
