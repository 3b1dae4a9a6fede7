// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXObserverList.h"

#include "support/DXWait.h"

#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

using testing::ElementsAre;

namespace
{

using List = DXObserverList<int>;

// The plain variable makes ThreadSanitizer see a removal that does not wait.
TEST(DXObserverList, removalWaitsForTheCallbackOfAnotherThread)
{
    for (int round = 0; round < 50; ++round) {
        List list;
        DXWait::Gate entered;
        DXWait::Gate removing;
        bool finished = false;
        auto token = list.add([&](int) {
            entered.open();
            removing.wait();
            for (int turn = 0; turn < 200; ++turn)
                std::this_thread::yield();
            finished = true;
        });
        std::jthread notifier([&list] { list.notify(1); });
        ASSERT_TRUE(entered.wait());
        removing.open();
        token.reset();
        EXPECT_TRUE(finished);
    }
}

TEST(DXObserverList, observersMayRemoveThemselvesAddAndNotify)
{
    List list;
    std::vector<int> heard;
    std::shared_ptr<void> first;
    std::shared_ptr<void> second;
    std::shared_ptr<void> late;
    first = list.add([&](int value) {
        heard.push_back(value);
        if (value == 1)
            list.notify(2);
        if (value != 2)
            return;
        first.reset();
        second.reset();
        late = list.add([&heard](int added) { heard.push_back(100 * added); });
    });
    second = list.add([&heard](int value) { heard.push_back(-value); });

    list.notify(1);
    EXPECT_THAT(heard, ElementsAre(1, 2));
    list.notify(3);
    EXPECT_THAT(heard, ElementsAre(1, 2, 300));
}

TEST(DXObserverList, tokensMayOutliveTheList)
{
    auto list = std::make_unique<List>();
    auto token = list->add([](int) {});
    list.reset();
    token.reset();
}

// Each observer reads an object that dies right after its removal.
TEST(DXObserverList, noCallbackRunsAfterRemovalUnderLoad)
{
    List list;
    std::atomic<bool> stop = false;
    std::vector<std::jthread> notifiers;
    notifiers.reserve(2);
    for (int n = 0; n < 2; ++n)
        notifiers.emplace_back([&] {
            while (!stop)
                list.notify(7);
        });
    std::vector<std::jthread> observers;
    observers.reserve(3);
    for (int n = 0; n < 3; ++n)
        observers.emplace_back([&list] {
            for (int round = 0; round < 300; ++round) {
                const std::vector<int> owned{7};
                const auto token =
                    list.add([&owned](int value) { EXPECT_EQ(owned.front(), value); });
                std::this_thread::yield();
            }
        });
    observers.clear();
    stop = true;
}

} // namespace
