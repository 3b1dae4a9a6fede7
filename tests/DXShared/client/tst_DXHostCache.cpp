// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DXHostCache.h"

#include "support/Background.h"
#include "support/PrintQt.h"

#include <QHostInfo>

#include <gtest/gtest.h>

namespace
{

class DXHostCacheTest : public testing::Test
{
protected:
    void TearDown() override { cache.clear(); }

    QString lookUp(const QString &host)
    {
        return inBackground([this, host] { return cache.cachedIPAddressForHost(host); });
    }

    DXHostCache &cache = DXHostCache::sharedInstance();
};

TEST_F(DXHostCacheTest, leavesAloneWhatIsNoNameToLookUp)
{
    for (const QString &host :
         {QStringLiteral(""), QStringLiteral("127.0.0.1"), QStringLiteral("::1"),
          QStringLiteral("fe80::1%lo"), QStringLiteral("/var/run/postgresql"),
          QStringLiteral("@abstract"), QStringLiteral("localhost,localhost"),
          QStringLiteral("no-such-host.invalid")})
        EXPECT_EQ(lookUp(host), host);
}

TEST_F(DXHostCacheTest, givesTheAddressOnlyWhenThereIsOne)
{
    for (const QString &host : {QStringLiteral("localhost"), QHostInfo::localHostName()}) {
        const auto addresses = QHostInfo::fromName(host).addresses();
        const QString expected = addresses.size() == 1 ? addresses.constFirst().toString() : host;
        EXPECT_EQ(cache.cachedIPAddressForHost(host), host) << "no look-up on the main thread";
        EXPECT_EQ(lookUp(host), expected);
        EXPECT_EQ(cache.cachedIPAddressForHost(host), expected) << "cached by now";
    }
}

TEST_F(DXHostCacheTest, keepsPinsAndStoredAddresses)
{
    const QString name = QStringLiteral("db.example.invalid");
    cache.setAddress(QStringLiteral("192.0.2.1"), name);
    EXPECT_EQ(lookUp(QStringLiteral("DB.Example.invalid")), QStringLiteral("192.0.2.1"));
    cache.setAddress(QStringLiteral("192.0.2.2"), name);
    EXPECT_EQ(lookUp(name), QStringLiteral("192.0.2.2"));
    cache.pinHost(name);
    EXPECT_EQ(lookUp(name), name);
    cache.setAddress(QStringLiteral("192.0.2.3"), name);
    EXPECT_EQ(lookUp(name), name);
    cache.clear();
    cache.setAddress(QStringLiteral("192.0.2.3"), name);
    EXPECT_EQ(lookUp(name), QStringLiteral("192.0.2.3"));
}

} // namespace
