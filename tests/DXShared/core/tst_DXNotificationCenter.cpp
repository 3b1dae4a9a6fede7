// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXNotificationCenter.h"

#include <gtest/gtest.h>

namespace
{

TEST(DXNotificationCenter, tellsOnlyThoseWhoListenForTheName)
{
    auto &center = DXNotificationCenter::sharedInstance();
    const QString changed = DXProductName(u"changed");
    const int sender = 0;
    QVariantMap heard;
    auto token = center.observe(changed, [&](const DXNotificationCenter::Notification &note) {
        EXPECT_EQ(note.name, changed);
        EXPECT_EQ(note.object, &sender);
        heard = note.userInfo;
    });
    center.post(DXProductName(u"other"), &sender, {{QStringLiteral("key"), 1}});
    EXPECT_TRUE(heard.isEmpty());
    center.post(changed, &sender, {{QStringLiteral("key"), 2}});
    EXPECT_EQ(heard.value(QStringLiteral("key")), 2);
    token.reset();
    center.post(changed, &sender, {{QStringLiteral("key"), 3}});
    EXPECT_EQ(heard.value(QStringLiteral("key")), 2);
}

} // namespace
