// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXAlwaysVisibleUserNotification.h"

#include "core/DXNotificationCenter.h"
#include "dispatch/DXDispatch.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>

#include <chrono>

namespace
{

// Programs that are closing down wait for it.
constexpr std::chrono::milliseconds patience(2000);

QDBusMessage ask(const QDBusConnection &bus, const QString &operation,
                 const QVariantList &arguments)
{
    const QString service = QStringLiteral("org.freedesktop.Notifications");
    QDBusMessage call = QDBusMessage::createMethodCall(
        service, QStringLiteral("/org/freedesktop/Notifications"), service, operation);
    call.setArguments(arguments);
    return bus.call(call, QDBus::Block, static_cast<int>(patience.count()));
}

// The body of a notification may be markup, which names of objects must not become (Desktop
// Notifications Specification, "Markup").
QString bodyFor(const QDBusConnection &bus, const QString &text)
{
    const QDBusReply<QStringList> capabilities = ask(bus, QStringLiteral("GetCapabilities"), {});
    return capabilities.value().contains(QLatin1String("body-markup")) ? text.toHtmlEscaped()
                                                                       : text;
}

} // namespace

QString DXAlwaysVisibleUserNotification::undeliveredNotificationName()
{
    return DXProductName(u"usernotificationundelivered");
}

void DXAlwaysVisibleUserNotification::deliver() const
{
    // Finding the bus blocks, too.
    DXDispatch::background([notification = *this] {
        if (notification.send(QDBusConnection::sessionBus()))
            return;
        DXDispatch::main([notification] {
            DXNotificationCenter::sharedInstance().post(
                undeliveredNotificationName(), nullptr,
                {{titleKey(), notification.title}, {textKey(), notification.text}});
        });
    });
}

bool DXAlwaysVisibleUserNotification::send(const QDBusConnection &bus) const
{
    DX_ASSERT_BACKGROUND();
    if (!bus.isConnected())
        return false;
    const uint newNotification = 0;
    const int asTheDesktopLikes = -1;
    const QVariantMap hints{{QStringLiteral("urgency"), QVariant::fromValue(uchar(1))}};
    const QDBusReply<uint> answer =
        ask(bus, QStringLiteral("Notify"),
            {QCoreApplication::applicationName(), newNotification, QString(), title,
             bodyFor(bus, text), QStringList(), hints, asTheDesktopLikes});
    return answer.isValid();
}
