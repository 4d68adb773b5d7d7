// SPDX-License-Identifier: MIT
#include "server/periodic_task.h"

#include <gtest/gtest.h>

#include <semaphore>

namespace raincast {
namespace {

using namespace std::chrono_literals;

TEST(PeriodicTaskTest, WorksAtOnceAndWhenWoken) {
    std::counting_semaphore<> turns(0);
    PeriodicTask task(1h, 0ms, [&turns](const std::stop_token&) { turns.release(); });
    EXPECT_TRUE(turns.try_acquire_for(20s));
    task.wake();
    EXPECT_TRUE(turns.try_acquire_for(20s));
}

TEST(PeriodicTaskTest, WorksAtItsInterval) {
    std::counting_semaphore<> turns(0);
    const PeriodicTask task(1ms, 0ms, [&turns](const std::stop_token&) { turns.release(); });
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(turns.try_acquire_for(20s));
    }
}

TEST(PeriodicTaskTest, WakingItWhileItWorksMakesItWorkOnceMore) {
    std::counting_semaphore<> begun(0);
    std::counting_semaphore<> mayEnd(0);
    PeriodicTask task(1h, 0ms, [&](const std::stop_token&) {
        begun.release();
        mayEnd.acquire();
    });
    ASSERT_TRUE(begun.try_acquire_for(20s));
    task.wake();
    mayEnd.release(2);
    EXPECT_TRUE(begun.try_acquire_for(20s));
}

TEST(PeriodicTaskTest, EndingStopsTheWork) {
    std::binary_semaphore begun(0);
    bool wasAsked = false;
    {
        const PeriodicTask task(1h, 0ms, [&](const std::stop_token& stop) {
            begun.release();
            while (!stop.stop_requested()) {
                std::this_thread::yield();
            }
            wasAsked = true;
        });
        ASSERT_TRUE(begun.try_acquire_for(20s));
    }
    EXPECT_TRUE(wasAsked);
}

} // namespace
} // namespace raincast
