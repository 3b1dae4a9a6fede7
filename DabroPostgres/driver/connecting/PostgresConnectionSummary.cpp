// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresDatabaseClient.h"

#include "client/ssh/DXSSHTunnel.h"
#include "driver/connecting/PostgresConnectionHandle.h"

namespace
{

QString place(PGconn *connection)
{
    const QString host = QString::fromUtf8(PQhost(connection));
    const QString port = QString::fromLatin1(PQport(connection));
    // libpq takes a host that begins so as the folder of a Unix socket, or as an abstract one.
    if (host.startsWith(QLatin1Char('/')) || host.startsWith(QLatin1Char('@')))
        return QStringLiteral("Unix socket %1/.s.PGSQL.%2").arg(host, port);
    return QStringLiteral("TCP %1:%2").arg(host, port);
}

QString encryption(PGconn *connection)
{
    if (PQgssEncInUse(connection))
        return QStringLiteral("encrypted by GSSAPI");
    if (!PQsslInUse(connection))
        return QStringLiteral("not encrypted");
    return QStringLiteral("%1 (%2)").arg(
        QString::fromLatin1(PQsslAttribute(connection, "protocol")),
        QString::fromLatin1(PQsslAttribute(connection, "cipher")));
}

} // namespace

QString PostgresDatabaseClient::connectionSummary() const
{
    if (!isConnected())
        return {};
    PGconn *const connection = m_internalConnection->get();
    QStringList parts{place(connection), encryption(connection)};
    if (m_tunnel)
        parts.append(QStringLiteral("through an SSH tunnel to %1")
                         .arg(postgresDetails().sshTunnelModel()->host));
    return parts.join(QLatin1String(", "));
}

bool PostgresDatabaseClient::connectionNeedsPassword() const
{
    return m_internalConnection && PQconnectionNeedsPassword(m_internalConnection->get()) != 0;
}
