// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/documents/OpenRequests.h"

#include "client/DabroDBC.h"
#include "core/DXError.h"
#include "desktop/Connections.h"
#include "desktop/documents/Documents.h"
#include "ui/DXFailureList.h"
#include "ui/query/DXQueryTab.h"

#include <QFileInfo>

#include <utility>

OpenRequests::OpenRequests(const Init &init, QObject *parent)
    : QObject(parent)
    , m_init(init)
{ }

void OpenRequests::begin()
{
    m_hasBegun = true;
    open(std::exchange(m_early, {}));
}

void OpenRequests::open(const QStringList &names)
{
    if (!m_hasBegun) {
        m_early += names;
        return;
    }
    for (const QString &name : names) {
        DXError error;
        if (QFileInfo::exists(name))
            openFile(name);
        else if (const auto details = m_init.connections.detailsFromText(name, &error))
            Q_EMIT connectionRequested(details);
        else
            showUnread(name, error);
    }
}

void OpenRequests::openFile(const QString &path)
{
    const DXQueryTab *const tab = m_init.documents.current();
    const bool hasConnection = tab && tab->hasConnection();
    m_init.documents.openFile(path, hasConnection ? tab->details()->copy() : nullptr);
}

void OpenRequests::showUnread(const QString &text, const DXError &error)
{
    const QString reason = error.description().trimmed();
    // The text of a connection may hold a password, which is not put on the screen.
    if (text.contains(u"://") || text.contains(u'='))
        m_init.failures.showFailure(
            text, reason, {}, {{tr("New connection…"), [this] { Q_EMIT dialogRequested(); }}});
    else
        m_init.failures.showFailure(
            text, tr("There is no file %1, and it is not the text of a connection.").arg(text),
            reason);
}
