// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/ScriptReceiver.h"

#include "dispatch/DXDispatch.h"

void ScriptReceiver::load(const std::shared_ptr<DXQueryLoader> &loader, const DabroDBC &details,
                          const Received &received)
{
    const std::shared_ptr<ScriptReceiver> receiver(new ScriptReceiver(received));
    receiver->m_self = receiver;
    loader->setDelegate(receiver);
    loader->beginLoadingQuery(details);
}

void ScriptReceiver::queryLoaderLoadedQuery(DXQueryLoader &loader, const QString &query)
{
    Q_UNUSED(loader)
    DXDispatch::main([self = std::move(m_self), query] { self->m_received(query); });
}
