// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXDesktopColors.h"

#include "dispatch/DXDispatch.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QPointer>

namespace
{

const QLatin1String path("/org/freedesktop/portal/desktop");
const QLatin1String interface("org.freedesktop.portal.Settings");
const QLatin1String space("org.freedesktop.appearance");
const QLatin1String key("color-scheme");
// Of the setting; the others are light windows and no wish, and then desktops have light ones.
constexpr uint darkWindows = 1;

} // namespace

void DXDesktopColors::listen()
{
    // A bus that does not answer is waited for when it is found.
    DXDispatch::background([self = QPointer(this)] {
        const QDBusConnection bus = QDBusConnection::sessionBus();
        DXDispatch::main([self, bus] {
            if (self && bus.isConnected())
                self->listenOn(bus);
        });
    });
}

void DXDesktopColors::listenOn(QDBusConnection bus)
{
    // The portal's name would be asked for, and waited for, if it were given here.
    bus.connect(QString(), path, interface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QDBusMessage)));
    QDBusMessage read = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), path, interface, QStringLiteral("Read"));
    read.setArguments({QString(space), QString(key)});
    auto *const answer = new QDBusPendingCallWatcher(bus.asyncCall(read), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (reply.isValid())
            take(reply.value().variant());
        answer->deleteLater();
    });
}

void DXDesktopColors::settingChanged(const QDBusMessage &message)
{
    const QVariantList changed = message.arguments();
    if (changed.size() == 3 && changed[0] == space && changed[1] == key)
        take(changed[2]);
}

// Read answers a variant in a variant, a change holds a plain one.
void DXDesktopColors::take(const QVariant &value)
{
    QVariant scheme = value;
    while (scheme.canConvert<QDBusVariant>())
        scheme = scheme.value<QDBusVariant>().variant();
    Q_EMIT told(scheme.toUInt() == darkWindows ? DXTheme::Appearance::Dark
                                               : DXTheme::Appearance::Light);
}
