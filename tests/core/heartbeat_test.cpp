// SPDX-License-Identifier: MIT
#include "core/busy_guard.h"
#include "core/heartbeat.h"
#include "support/manual_phase.h"
#include "support/test_clock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace raincast {
namespace {

using testing::ElementsAre;

constexpr FileTime kBeatInterval = kFileTimePerSecond / 10;

class TestCounter : public CHeartbeat::Counter {
public:
    using Counter::Counter;
    void Tick() override {
        ++ticks;
        if (whenTicked) {
            const auto action = whenTicked;
            action();
        }
    }
    void Resync() override { ++resyncs; }

    int ticks = 0;
    int resyncs = 0;
    std::function<void()> whenTicked;
};

class HeartbeatTest : public testing::Test {
protected:
    void beat(int times = 1) {
        for (int i = 0; i < times; ++i) {
            clock.advance(kBeatInterval);
            heartbeat.Beat();
        }
    }
    // The numbers of the next beats, counted from 1, at which the counter ticks.
    std::vector<int> tickingBeats(TestCounter& counter, int beats) {
        std::vector<int> result;
        for (int i = 1; i <= beats; ++i) {
            const int before = counter.ticks;
            beat();
            if (counter.ticks != before) {
                result.push_back(i);
            }
        }
        return result;
    }

    TestClock clock;
    ManualPhase phase;
    CHeartbeat heartbeat;
};

TEST_F(HeartbeatTest, ThePhaseChoosesTheFirstBeat) {
    const struct {
        int phase;
        int period;
        std::vector<int> beats;
    } rows[] = {
        {0, 10, {1, 11, 21}},     {9, 10, {10, 20, 30}},           {10, 10, {1, 11, 21}},
        {32767, 10, {8, 18, 28}}, {4, 5, {5, 10, 15, 20, 25, 30}}, {32767, 12, {8, 20}},
    };
    for (const auto& row : rows) {
        ManualPhase::set(row.phase);
        TestCounter counter(row.period);
        EXPECT_EQ(tickingBeats(counter, 30), row.beats) << row.phase << " " << row.period;
    }
}

TEST_F(HeartbeatTest, TheProgramsOwnPhasesSpreadCounters) {
    CHeartbeat::usePhaseSource(nullptr);
    std::vector<int> firsts(10);
    for (int i = 0; i < 1000; ++i) {
        TestCounter counter(10);
        const std::vector<int> beats = tickingBeats(counter, 20);
        ASSERT_EQ(beats.size(), 2U);
        ASSERT_EQ(beats[1] - beats[0], 10);
        ++firsts[static_cast<std::size_t>(beats[0] - 1)];
    }
    for (const int count : firsts) {
        EXPECT_GT(count, 20);
    }
}

TEST_F(HeartbeatTest, APeriodBelowOneIsOne) {
    TestCounter counter(0);
    beat(3);
    EXPECT_EQ(counter.ticks, 3);
}

TEST_F(HeartbeatTest, CountersTickInOrderOfSubscription) {
    std::vector<char> order;
    TestCounter a(1);
    TestCounter b(1);
    a.whenTicked = [&] { order.push_back('a'); };
    b.whenTicked = [&] { order.push_back('b'); };
    beat(2);
    EXPECT_THAT(order, ElementsAre('a', 'b', 'a', 'b'));
}

TEST_F(HeartbeatTest, AJumpOfTheClockResynchronisesAndCountsNothing) {
    ManualPhase::set(2);
    TestCounter counter(10);
    beat();
    clock.advance(25 * kFileTimePerSecond);
    heartbeat.Beat();
    EXPECT_EQ(counter.resyncs, 1);
    EXPECT_EQ(counter.ticks, 0);
    EXPECT_EQ(tickingBeats(counter, 12), (std::vector<int>{2, 12}));
    EXPECT_EQ(counter.resyncs, 1);
}

TEST_F(HeartbeatTest, OnlyMoreThanTwentySecondsAreAJump) {
    TestCounter counter(1);
    beat();
    clock.advance(20 * kFileTimePerSecond);
    heartbeat.Beat();
    EXPECT_EQ(counter.resyncs, 0);
    clock.advance(20 * kFileTimePerSecond + 1);
    heartbeat.Beat();
    EXPECT_EQ(counter.resyncs, 1);
    EXPECT_EQ(counter.ticks, 2);
}

TEST_F(HeartbeatTest, TheFirstBeatIsNoJump) {
    TestCounter counter(1);
    beat();
    EXPECT_EQ(counter.resyncs, 0);
    EXPECT_EQ(counter.ticks, 1);
}

TEST_F(HeartbeatTest, AClockSetBackCountsAsUsual) {
    TestCounter counter(1);
    beat();
    clock.advance(-3600 * kFileTimePerSecond);
    heartbeat.Beat();
    EXPECT_EQ(counter.resyncs, 0);
    EXPECT_EQ(counter.ticks, 2);
}

TEST_F(HeartbeatTest, WithoutCountersABeatTakesNoTime) {
    heartbeat.Beat();
    EXPECT_EQ(heartbeat.now(), 0);
    clock.advance(25 * kFileTimePerSecond);
    TestCounter counter(1);
    heartbeat.Beat();
    EXPECT_EQ(heartbeat.now(), clock.now());
    EXPECT_EQ(counter.resyncs, 0);
    EXPECT_EQ(counter.ticks, 1);
}

TEST_F(HeartbeatTest, NothingBeatsWhileTheProgramIsBusy) {
    TestCounter counter(1);
    beat();
    {
        const BusyGuard busy;
        beat(5);
    }
    EXPECT_EQ(counter.ticks, 1);
    EXPECT_EQ(heartbeat.now(), clock.now() - 5 * kBeatInterval);
    beat();
    EXPECT_EQ(counter.ticks, 2);
}

TEST_F(HeartbeatTest, ACounterMayEndInItsTick) {
    auto a = std::make_unique<TestCounter>(1);
    TestCounter b(1);
    a->whenTicked = [&] { a.reset(); };
    beat(2);
    EXPECT_EQ(b.ticks, 2);
}

} // namespace
} // namespace raincast
