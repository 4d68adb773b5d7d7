// SPDX-License-Identifier: MIT
#include "core/clock.h"

#include <gtest/gtest.h>

#include <ctime>

namespace raincast {
namespace {

TEST(ClockTest, TheSystemsClockIsInUseUntilAnotherIsSet) {
    const auto before = static_cast<std::uint64_t>(std::time(nullptr));
    EXPECT_GE(toUnixSeconds(Clock::current().now()), before);

    ManualClock manual(kUnixEpoch);
    Clock::use(&manual);
    EXPECT_EQ(Clock::current().now(), kUnixEpoch);
    manual.advance(kFileTimePerMinute);
    EXPECT_EQ(toUnixSeconds(Clock::current().now()), 60U);

    Clock::use(nullptr);
    EXPECT_GE(toUnixSeconds(Clock::current().now()), before);
}

} // namespace
} // namespace raincast
