// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scripts/PostgresScriptQueryLoader.h"

#include "client/DabroDBC.h"

PostgresScriptQueryLoader::PostgresScriptQueryLoader(Delivery delivery)
    : m_delivery(delivery)
{ }

void PostgresScriptQueryLoader::beginLoadingQuery(const DabroDBC &details)
{
    if (m_delivery == Delivery::AtOnce)
        deliver(script(details));
    else
        deliverFromBackground([this, copy = details.copy()] { return script(*copy); });
}
