// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresConnectionHelper.h"

#include "core/DXNotificationCenter.h"
#include "driver/PostgresDatabaseConnectionDetails.h"
#include "support/PrintQt.h"

#include <atomic>
#include <gtest/gtest.h>
#include <latch>
#include <thread>
#include <vector>

namespace
{

class Announcements
{
public:
    int count() const { return m_count; }

private:
    std::atomic<int> m_count = 0;
    std::shared_ptr<void> m_observer = DXNotificationCenter::sharedInstance().observe(
        QStringLiteral("org.dabro.connectionsettingschanged"), [this](const auto &notification) {
            if (notification.object == &PostgresConnectionHelper::sharedInstance())
                ++m_count;
        });
};

TEST(PostgresConnectionHelper, announcesAChangeOnce)
{
    const Announcements announcements;
    auto &helper = PostgresConnectionHelper::sharedInstance();
    const QString id = QStringLiteral("announced");
    EXPECT_TRUE(helper.groupBySchemaForId(id));
    helper.setGroupBySchemaForId(true, id);
    EXPECT_EQ(announcements.count(), 0);
    helper.setGroupBySchemaForId(false, id);
    helper.setGroupBySchemaForId(false, id);
    EXPECT_EQ(announcements.count(), 1);
    EXPECT_FALSE(helper.groupBySchemaForId(id));
}

TEST(PostgresConnectionHelper, knowsUnsavedRecordsByTheirDescription)
{
    auto &helper = PostgresConnectionHelper::sharedInstance();
    PostgresDatabaseConnectionDetails first;
    first.setHost(QStringLiteral("unsaved"));
    const auto second = first.copy();
    helper.setGroupBySchemaForDBC(false, first);
    EXPECT_FALSE(helper.groupBySchemaForDBC(*second));
    second->setConnectionId(QStringLiteral("saved"));
    EXPECT_EQ(PostgresConnectionHelper::idForDBC(*second), QStringLiteral("saved"));
    EXPECT_TRUE(helper.groupBySchemaForDBC(*second));
}

TEST(PostgresConnectionHelper, announcesAChangeOfManyWritersOnce)
{
    const Announcements announcements;
    auto &helper = PostgresConnectionHelper::sharedInstance();
    constexpr int rounds = 200;
    constexpr int writers = 4;
    for (int round = 0; round < rounds; ++round) {
        const QString id = QStringLiteral("hammered %1").arg(round);
        std::latch start(writers);
        std::vector<std::jthread> threads;
        threads.reserve(writers);
        for (int writer = 0; writer < writers; ++writer) {
            threads.emplace_back([&] {
                start.arrive_and_wait();
                helper.setGroupBySchemaForId(false, id);
                EXPECT_FALSE(helper.groupBySchemaForId(id));
            });
        }
    }
    EXPECT_EQ(announcements.count(), rounds);
}

} // namespace
