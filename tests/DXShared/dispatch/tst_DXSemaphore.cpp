// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dispatch/DXSemaphore.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace
{

TEST(DXSemaphore, triesWithoutWaiting)
{
    DXSemaphore semaphore(2, QStringLiteral("org.dabro.test"));
    EXPECT_TRUE(semaphore.tryWait());
    EXPECT_TRUE(semaphore.tryWait());
    EXPECT_FALSE(semaphore.tryWait());
    semaphore.signal();
    EXPECT_TRUE(semaphore.tryWait());
    EXPECT_EQ(semaphore.identifier(), QStringLiteral("org.dabro.test"));
}

TEST(DXSemaphore, guardsWhatOneThreadMayTouch)
{
    DXSemaphore semaphore(1);
    int counter = 0;
    {
        std::vector<std::jthread> threads;
        threads.reserve(4);
        for (int n = 0; n < 4; ++n)
            threads.emplace_back([&] {
                for (int round = 0; round < 2000; ++round) {
                    semaphore.wait();
                    const DXSemaphoreReleaser releaser(semaphore);
                    ++counter;
                }
            });
    }
    EXPECT_EQ(counter, 8000);
}

} // namespace
