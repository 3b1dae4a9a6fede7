// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DXShared/ui/SessionBus.h"

#include "support/PrintQt.h"

#include <QDBusConnection>

void SessionBus::SetUp()
{
    m_daemon.start(u"dbus-daemon"_qs, {u"--session"_qs, u"--nofork"_qs, u"--print-address"_qs});
    ASSERT_TRUE(m_daemon.waitForReadyRead()) << qPrintable(m_daemon.errorString());
    const QString address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    QDBusConnection::connectToBus(address, u"desktop"_qs);
    QDBusConnection::connectToBus(address, u"program"_qs);
}

void SessionBus::TearDown()
{
    QDBusConnection::disconnectFromBus(u"desktop"_qs);
    QDBusConnection::disconnectFromBus(u"program"_qs);
    m_daemon.kill();
    m_daemon.waitForFinished();
}
