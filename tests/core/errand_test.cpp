// SPDX-License-Identifier: MIT
#include "core/errand.h"
#include "support/event_loop.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace raincast {
namespace {

TEST(ErrandTest, ItsWorkIsDoneInAnotherThreadAndItsEndIsHeardInThisOne) {
    EventLoop loop;
    Errand errand;
    std::thread::id worker;
    std::thread::id listener;
    errand.start(
        [&] { worker = std::this_thread::get_id(); }, [&] { listener = std::this_thread::get_id(); }
    );
    EXPECT_TRUE(loop.until([&] { return listener != std::thread::id(); }));
    EXPECT_NE(worker, std::this_thread::get_id());
    EXPECT_EQ(listener, std::this_thread::get_id());
    EXPECT_FALSE(errand.underWay());
}

TEST(ErrandTest, WaitingHearsOfTheEndOnceAndNoOtherErrandsCall) {
    EventLoop loop;
    Errand errand;
    int first = 0;
    int second = 0;
    errand.wait(); // for nothing
    errand.start([] {}, [&] { ++first; });
    errand.wait();
    EXPECT_EQ(first, 1);
    // The call of the first one's thread is still on its way when the second is started.
    errand.start([] {}, [&] { ++second; });
    EXPECT_TRUE(loop.until([&] { return second == 1; }));
    loop.drain();
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
}

TEST(ErrandTest, TheNextMayBeStartedWhenOneEnds) {
    EventLoop loop;
    Errand errand;
    bool ended = false;
    errand.start([] {}, [&] { errand.start([] {}, [&] { ended = true; }); });
    EXPECT_TRUE(loop.until([&] { return ended; }));
}

TEST(ErrandTest, ItsEndWaitsForTheWorkAndTellsNobody) {
    EventLoop loop;
    const auto worked = std::make_shared<bool>(false);
    const auto heard = std::make_shared<bool>(false);
    {
        Errand errand;
        errand.start([worked] { *worked = true; }, [heard] { *heard = true; });
    }
    EXPECT_TRUE(*worked);
    loop.drain();
    EXPECT_FALSE(*heard);
}

} // namespace
} // namespace raincast
