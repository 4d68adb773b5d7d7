// SPDX-License-Identifier: MIT
#include "core/timers.h"
#include "support/event_loop.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

using std::chrono::milliseconds;

TEST(TimersTest, AnAlarmFiresOnceForEachStart) {
    EventLoop loop;
    QtTimers timers;
    int fired = 0;
    const auto alarm = timers.make([&fired] { ++fired; });
    loop.drain();
    EXPECT_EQ(fired, 0);
    alarm->start(milliseconds{0});
    alarm->start(milliseconds{1});
    EXPECT_TRUE(loop.until([&] { return fired == 1; }));
    loop.drain();
    EXPECT_EQ(fired, 1);
}

TEST(TimersTest, AnAlarmThatIsStoppedOrEndedDoesNotFire) {
    EventLoop loop;
    QtTimers timers;
    int fired = 0;
    const auto stopped = timers.make([&fired] { ++fired; });
    auto ended = timers.make([&fired] { ++fired; });
    stopped->start(milliseconds{0});
    ended->start(milliseconds{0});
    stopped->stop();
    ended.reset();
    loop.drain();
    EXPECT_EQ(fired, 0);
}

} // namespace
} // namespace raincast
