// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dispatch/DXDispatch.h"

#include "core/DXLogHelper.h"
#include "support/DXWait.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace
{

// Written by a background thread and read on the main one, with nothing but the door between.
struct Message
{
    int sender = 0;
    int number = 0;
};

TEST(DXDispatch, handsWorkToTheMainThreadInOrder)
{
    constexpr int senders = 4;
    constexpr int messages = 500;
    std::vector<int> received(senders, 0);
    int total = 0;
    EXPECT_TRUE(DXDispatch::isMainThread());
    for (int sender = 0; sender < senders; ++sender)
        ASSERT_TRUE(DXDispatch::background([&received, &total, sender] {
            EXPECT_FALSE(DXDispatch::isMainThread());
            for (int number = 0; number < messages; ++number) {
                auto message = std::make_shared<Message>(Message{sender, number});
                DXDispatch::main([&received, &total, message = std::move(message)] {
                    EXPECT_TRUE(DXDispatch::isMainThread());
                    EXPECT_EQ(received[static_cast<std::size_t>(message->sender)]++,
                              message->number);
                    ++total;
                });
            }
        }));
    EXPECT_EQ(total, 0) << "the main door never runs work at once";
    EXPECT_TRUE(DXWait::until([&total] { return total == senders * messages; }));
}

TEST(DXDispatch, appliesWorkToEveryIndexWhileAllThreadsAreBusy)
{
    const auto gate = std::make_shared<DXWait::Gate>();
    constexpr int busy = 100;
    std::atomic<int> ended = 0;
    for (int thread = 0; thread < busy; ++thread)
        DXDispatch::background([gate, &ended] {
            gate->wait();
            ++ended;
        });
    std::vector<std::atomic<int>> calls(1000);
    DXDispatch::apply(1000,
                      [&calls](qsizetype index) { ++calls[static_cast<std::size_t>(index)]; });
    for (const auto &count : calls)
        EXPECT_EQ(count, 1);
    DXDispatch::apply(0, [](qsizetype) { ADD_FAILURE(); });
    gate->open();
    EXPECT_TRUE(DXWait::until([&ended] { return ended == busy; }));
}

TEST(DXDispatch, mainWorkMayPostAndThrow)
{
    int errors = 0;
    const auto token = DXLogHelper::sharedInstance().observeErrors(
        [&errors](const DXError &, const QVariantMap &) { ++errors; });
    bool ran = false;
    DXDispatch::main([&ran] {
        DXDispatch::main([&ran] { ran = true; });
        throw std::runtime_error("out of luck");
    });
    EXPECT_TRUE(DXWait::until([&ran] { return ran; }));
    EXPECT_EQ(errors, 1);
}

TEST(DXDispatch, workMayDieUnrunWithTheApplicationsQueue)
{
    auto held = std::make_shared<Message>();
    const std::weak_ptr<Message> watched = held;
    std::jthread([&held] {
        DXDispatch::main([held = std::move(held)] { FAIL() << held->number; });
    }).join();
    EXPECT_FALSE(watched.expired());
    QCoreApplication::removePostedEvents(QCoreApplication::instance());
    EXPECT_TRUE(watched.expired());
}

// In a process of its own, since a program shuts down once.
TEST(DXDispatchDeathTest, shutdownRefusesBothDoorsOnceRunningWorkHasEnded)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            DXWait::Gate started;
            bool finished = false;
            DXDispatch::background([&] {
                started.open();
                for (int turn = 0; turn < 200; ++turn)
                    std::this_thread::yield();
                finished = true;
            });
            started.wait();
            DXDispatch::shutdown();
            const bool refused = !DXDispatch::background([] {}) && !DXDispatch::main([] {});
            std::exit(finished && refused ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
