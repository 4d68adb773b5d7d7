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

/// A machine whose clock shows what a test says.
class MachineClock : public SystemClock {
public:
    FileTime shown = kUnixEpoch;

private:
    [[nodiscard]] FileTime system() const override { return shown; }
};

class MachineClockTest : public testing::Test {
protected:
    void expectNow(FileTime time) const { EXPECT_NEAR(secondsTo(time), 0, 60); }
    double secondsTo(FileTime time) const {
        return static_cast<double>(clock.now() - time) / kFileTimePerSecond;
    }

    const FileTime heard = fromCalendar({2027, 3, 1, 12, 0});
    MachineClock clock;
};

TEST_F(MachineClockTest, OneThatMayBeRightIsBelieved) {
    clock.shown = fromCalendar({2028, 1, 1, 0, 0});
    clock.hear(heard);
    EXPECT_EQ(clock.now(), clock.shown);
    EXPECT_EQ(clock.teller(), Clock::Teller::system);
    EXPECT_TRUE(clock.isKnown());
}

TEST_F(MachineClockTest, OneThatBeganIn1970GoesByTheReceiver) {
    EXPECT_EQ(clock.now(), kUnixEpoch);
    EXPECT_EQ(clock.teller(), Clock::Teller::nobody);
    EXPECT_FALSE(clock.isKnown());
    clock.hear(heard);
    expectNow(heard);
    EXPECT_EQ(clock.teller(), Clock::Teller::receiver);
    EXPECT_TRUE(clock.isKnown());
    // Wherever it stands, as long as it is wrong.
    clock.shown += 1'000 * kFileTimePerMinute;
    expectNow(heard);
    // When the network has set it, it is right.
    clock.shown = fromCalendar({2028, 1, 1, 0, 0});
    EXPECT_EQ(clock.now(), clock.shown);
    EXPECT_EQ(clock.teller(), Clock::Teller::system);
}

TEST_F(MachineClockTest, AReceiverThatIsWrongItselfIsNotHeard) {
    clock.hear(fromCalendar({2007, 6, 15, 18, 30})); // its weeks were counted from 0 again
    clock.hear(12 * 60 * kFileTimePerMinute);        // a time of day without a date
    EXPECT_EQ(clock.now(), kUnixEpoch);
    EXPECT_FALSE(clock.isKnown());
    clock.hear(heard);
    clock.hear(0);
    expectNow(heard);
    clock.hear(heard + 10 * kFileTimePerMinute);
    expectNow(heard + 10 * kFileTimePerMinute);
}

TEST_F(MachineClockTest, NothingIsOfTheFutureWhileTheTimeIsNotKnown) {
    Clock::use(&clock);
    EXPECT_GT(Clock::latestNow(), fromCalendar({2999, 12, 31}));
    clock.hear(heard);
    EXPECT_NEAR(static_cast<double>(Clock::latestNow() - heard) / kFileTimePerMinute, 0, 1);
    Clock::use(nullptr);
}

} // namespace
} // namespace raincast
