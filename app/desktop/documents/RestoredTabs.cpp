// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/documents/RestoredTabs.h"

#include "client/DXTextRecord.h"
#include "client/DabroDBC.h"
#include "client/SQLRecentConnectionList.h"
#include "core/DXNotificationCenter.h"
#include "desktop/Connections.h"
#include "ui/query/DXQueryTab.h"

RestoredTabs::RestoredTabs(const Connections &connections, QObject *parent)
    : QObject(parent)
    , m_connections(connections)
    , m_observer(DXNotificationCenter::sharedInstance().observe(
          SQLRecentConnectionList::notificationName(),
          [this](const DXNotificationCenter::Notification &) { update(); }))
{ }

RestoredTabs::~RestoredTabs() = default;

void RestoredTabs::add(DXQueryTab *tab, const DXTextRecord &record)
{
    if (record.connectionId.isEmpty())
        return;
    m_waiting.append({tab, record.connectionId, record.database});
    update();
}

void RestoredTabs::update()
{
    const qsizetype before = m_waiting.size();
    m_waiting.removeIf([this](const Waiting &waiting) {
        // Somebody may have chosen another one meanwhile.
        if (!waiting.tab || waiting.tab->hasConnection())
            return true;
        const auto details = m_connections.savedDetails(waiting.connectionId);
        if (details && !waiting.database.isNull())
            details->setDatabase(waiting.database);
        return details && waiting.tab->setDetails(details, DXQueryTab::ReadNames::OnRun);
    });
    if (m_waiting.size() != before)
        Q_EMIT reunited();
}
