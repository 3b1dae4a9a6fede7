// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/connecting/PostgresConnectionHandle.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <utility>

namespace
{

// A server that went away without a word, or a laptop that slept, is noticed within a minute
// instead of the system's two hours: three questions, the limit on silence that connecting sets,
// and then no more (tcp(7)). Unix sockets refuse all of it and need none.
void noticeLostPeers(int socket)
{
    const auto set = [socket](int option, int value) {
        ::setsockopt(socket, IPPROTO_TCP, option, &value, sizeof(value));
    };
    set(TCP_KEEPIDLE, 30);
    set(TCP_KEEPINTVL, 10);
    set(TCP_KEEPCNT, 3);
}

} // namespace

PostgresConnectionHandle::PostgresConnectionHandle(PGconn *connection)
    : m_connection(connection)
{
    const int socket = PQsocket(connection);
    if (socket == -1)
        return;
    noticeLostPeers(socket);
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
