// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresConnectionHandle.h"

#include <utility>

QString PostgresConnectionHandle::errorMessage() const
{
    return m_connection ? QString::fromUtf8(PQerrorMessage(m_connection))
                        : QStringLiteral("The connection to the server was closed.");
}

void PostgresConnectionHandle::close()
{
    PQfinish(std::exchange(m_connection, nullptr));
}
