// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXAlwaysVisibleUserNotification.h"

#include "DXShared/ui/SessionBus.h"
#include "support/Background.h"
#include "support/PrintQt.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

namespace
{

/// A desktop's notification service.
class Desktop final : public QDBusVirtualObject
{
public:
    explicit Desktop(const QStringList &capabilities)
        : m_capabilities(capabilities)
    { }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        if (message.member() == u"GetCapabilities"_qs)
            return bus.send(message.createReply(m_capabilities));
        shown = message.arguments();
        return bus.send(message.createReply(7U));
    }

    QVariantList shown;

private:
    const QStringList m_capabilities;
};

class UserNotificationTest : public SessionBus
{
protected:
    bool send() const
    {
        return inBackground([this] { return told.send(QDBusConnection(u"program"_qs)); });
    }

    const DXAlwaysVisibleUserNotification told{.title = u"Table has been dropped"_qs,
                                               .text = u"The table a.<b>&amp;</b> is gone"_qs};
};

TEST_F(UserNotificationTest, MakesNoMarkupOfNames)
{
    for (const bool hasMarkup : {true, false}) {
        QDBusConnection bus(u"desktop"_qs);
        Desktop desktop(hasMarkup ? QStringList{u"body"_qs, u"body-markup"_qs}
                                  : QStringList{u"body"_qs});
        bus.registerVirtualObject(u"/org/freedesktop/Notifications"_qs, &desktop);
        ASSERT_TRUE(bus.registerService(u"org.freedesktop.Notifications"_qs));
        EXPECT_TRUE(send());
        ASSERT_EQ(desktop.shown.size(), 8);
        EXPECT_EQ(desktop.shown[3].toString(), told.title);
        EXPECT_EQ(desktop.shown[4].toString(),
                  hasMarkup ? u"The table a.&lt;b&gt;&amp;amp;&lt;/b&gt; is gone"_qs : told.text);
        bus.unregisterService(u"org.freedesktop.Notifications"_qs);
        bus.unregisterObject(u"/org/freedesktop/Notifications"_qs);
    }
}

TEST_F(UserNotificationTest, TellsThatNobodyShowsIt)
{
    EXPECT_FALSE(send());
    EXPECT_FALSE(inBackground([this] { return told.send(QDBusConnection(u"nowhere"_qs)); }));
}

} // namespace
