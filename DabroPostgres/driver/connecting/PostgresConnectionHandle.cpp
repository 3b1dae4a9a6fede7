// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/connecting/PostgresConnectionHandle.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <utility>

PostgresConnectionHandle::PostgresConnectionHandle(PGconn *connection)
    : m_connection(connection)
{
    const int socket = PQsocket(connection);
    if (socket != -1)
        m_socket = ::fcntl(socket, F_DUPFD_CLOEXEC, 0);
}

QString PostgresConnectionHandle::errorMessage() const
{
    return m_connection ? QString::fromUtf8(PQerrorMessage(m_connection))
                        : QStringLiteral("The connection to the server was closed.");
}

void PostgresConnectionHandle::close()
{
    PQfinish(std::exchange(m_connection, nullptr));
    if (m_socket != -1)
        ::close(std::exchange(m_socket, -1));
}

void PostgresConnectionHandle::abandon() const
{
    if (m_socket != -1)
        ::shutdown(m_socket, SHUT_RDWR);
}
