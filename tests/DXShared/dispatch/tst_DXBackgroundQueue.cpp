// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dispatch/DXBackgroundQueue.h"

#include "core/DXLogHelper.h"
#include "support/DXWait.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace
{

// Every work blocks until as many as there may be threads run at once; the one beyond waits.
TEST(DXBackgroundQueue, runsWorkThatBlocksAsWideAsItsLimit)
{
    constexpr int limit = 8;
    std::atomic<int> running = 0;
    std::atomic<bool> ranBeyond = false;
    DXWait::Gate allRun;
    DXWait::Gate leave;
    DXWait::Gate beyond;
    DXBackgroundQueue queue({.threads = limit});
    for (int n = 0; n < limit; ++n)
        ASSERT_TRUE(queue.add([&] {
            if (++running == limit)
                allRun.open();
            leave.wait();
        }));
    queue.add([&] {
        ranBeyond = true;
        beyond.open();
    });
    ASSERT_TRUE(allRun.wait());
    EXPECT_FALSE(ranBeyond);
    EXPECT_EQ(queue.threadCount(), limit);
    leave.open();
    EXPECT_TRUE(beyond.wait());
}

TEST(DXBackgroundQueue, letsIdleThreadsGoAndStartsNewOnes)
{
    DXBackgroundQueue queue({.threads = 4, .idle = std::chrono::milliseconds(1)});
    for (int round = 0; round < 5; ++round) {
        std::atomic<int> done = 0;
        for (int n = 0; n < 20; ++n)
            ASSERT_TRUE(queue.add([&done] { ++done; }));
        EXPECT_TRUE(DXWait::until([&] { return done == 20 && queue.threadCount() == 0; }));
    }
}

TEST(DXBackgroundQueue, survivesWorkThatThrows)
{
    std::atomic<int> logged = 0;
    const auto token = DXLogHelper::sharedInstance().observeErrors(
        [&logged](const DXError &error, const QVariantMap &) {
            if (error.description().contains(QStringLiteral("out of luck"))
                || error.description().contains(QStringLiteral("unknown exception")))
                ++logged;
        });
    DXWait::Gate next;
    DXBackgroundQueue queue({.threads = 1});
    queue.add([] { throw std::runtime_error("out of luck"); });
    queue.add([] { throw 42; });
    queue.add([&next] { next.open(); });
    EXPECT_TRUE(next.wait());
    EXPECT_EQ(logged, 2);
}

TEST(DXBackgroundQueue, shutdownDropsWhatWaitsAndWaitsForWhatRuns)
{
    DXWait::Gate started;
    DXWait::Gate dropped;
    bool finished = false;
    bool ranDropped = false;
    DXBackgroundQueue queue({.threads = 1});
    queue.add([&] {
        started.open();
        EXPECT_TRUE(dropped.wait());
        finished = true;
    });
    // Its destruction is what lets the running work end.
    auto held = std::shared_ptr<void>(nullptr, [&dropped](void *) { dropped.open(); });
    queue.add([&ranDropped, held = std::move(held)] { ranDropped = true; });
    ASSERT_TRUE(started.wait());
    queue.shutdown();
    EXPECT_TRUE(finished);
    EXPECT_FALSE(ranDropped);

    const auto refused = std::make_shared<int>(0);
    EXPECT_FALSE(queue.add([refused] {}));
    EXPECT_EQ(refused.use_count(), 1);
    EXPECT_EQ(queue.threadCount(), 0);
}

TEST(DXBackgroundQueue, shutsDownUnderLoad)
{
    for (int round = 0; round < 30; ++round) {
        std::atomic<int> accepted = 0;
        std::atomic<int> ended = 0;
        DXBackgroundQueue queue({.threads = 3, .idle = std::chrono::milliseconds(0)});
        std::latch begin(4);
        std::vector<std::jthread> callers;
        callers.reserve(3);
        for (int n = 0; n < 3; ++n)
            callers.emplace_back([&] {
                begin.arrive_and_wait();
                const auto ending = [&ended](void *) { ++ended; };
                while (queue.add([held = std::shared_ptr<void>(nullptr, ending)] {}))
                    ++accepted;
                --ended;
            });
        begin.arrive_and_wait();
        std::this_thread::yield();
        queue.shutdown();
        callers.clear();
        EXPECT_EQ(accepted, ended);
    }
}

} // namespace
