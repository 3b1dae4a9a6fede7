// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DabroPostgres/scripts/ScriptReceiver.h"

#include "client/DabroDBC.h"
#include "scripts/PostgresScriptCatalogue.h"
#include "support/DXWait.h"

QString ScriptReceiver::script(const ScriptFile::Script &of, const DabroDBC &details)
{
    DXError error;
    const auto loader = PostgresScriptCatalogue().createLoader(
        {.kind = of.kind, .script = of.script, .object = of.object, .values = of.values}, details,
        &error);
    return loader ? load(*loader, details).script : error.description();
}

ScriptReceiver::Delivery ScriptReceiver::load(DXQueryLoader &loader, const DabroDBC &details)
{
    const auto receiver = std::make_shared<ScriptReceiver>();
    auto delivered = receiver->m_delivered.get_future();
    loader.setDelegate(receiver);
    loader.beginLoadingQuery(details);
    if (delivered.wait_for(DXWait::Limit) != std::future_status::ready)
        qFatal("A script was not delivered");
    return delivered.get();
}

void ScriptReceiver::queryLoaderLoadedQuery(DXQueryLoader &loader, const QString &query)
{
    Q_UNUSED(loader)
    m_delivered.set_value({.script = query, .wasAtOnce = std::this_thread::get_id() == m_asking});
}
