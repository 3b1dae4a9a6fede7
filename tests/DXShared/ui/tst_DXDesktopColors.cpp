// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXDesktopColors.h"

#include "DXShared/ui/SessionBus.h"
#include "support/DXWait.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>

namespace
{

const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString service = QStringLiteral("org.freedesktop.portal.Desktop");

QVariant dbusVariant(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

/// A desktop whose windows are dark at first.
class Portal final : public QDBusVirtualObject
{
public:
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        const bool isAsked =
            message.member() == u"Read"
            && message.arguments()
                   == QVariantList{u"org.freedesktop.appearance"_qs, u"color-scheme"_qs};
        return bus.send(isAsked ? message.createReply(dbusVariant(dbusVariant(1U)))
                                : message.createErrorReply(QDBusError::InvalidArgs, {}));
    }
};

class DesktopColorsTest : public SessionBus
{
protected:
    void change(const QString &key, uint value) const
    {
        QDBusMessage changed = QDBusMessage::createSignal(path, interface, u"SettingChanged"_qs);
        changed.setArguments({u"org.freedesktop.appearance"_qs, key, dbusVariant(value)});
        QDBusConnection(u"desktop"_qs).send(changed);
    }
};

TEST_F(DesktopColorsTest, FollowTheDesktop)
{
    QDBusConnection desktop(u"desktop"_qs);
    Portal portal;
    desktop.registerVirtualObject(path, &portal);
    ASSERT_TRUE(desktop.registerService(service));

    QList<bool> isDark;
    DXDesktopColors colors;
    QObject::connect(&colors, &DXDesktopColors::told, &colors, [&isDark](DXTheme::Appearance told) {
        isDark.append(told == DXTheme::Appearance::Dark);
    });
    colors.listenOn(QDBusConnection(u"program"_qs));
    ASSERT_TRUE(DXWait::until([&] { return isDark.size() == 1; }));
    for (const uint scheme : {2U, 1U, 0U})
        change(u"color-scheme"_qs, scheme);
    change(u"accent-color"_qs, 1);
    change(u"color-scheme"_qs, 1);
    ASSERT_TRUE(DXWait::until([&] { return isDark.size() == 5; }));
    EXPECT_EQ(isDark, (QList<bool>{true, false, true, false, true}));
}

} // namespace
