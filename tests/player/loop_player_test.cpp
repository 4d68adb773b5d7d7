// SPDX-License-Identifier: MIT
#include "core/busy_guard.h"
#include "player/loop_player.h"
#include "player/loop_setting.h"
#include "support/manual_timers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LoopPlayerTest : public testing::Test {
protected:
    LoopPlayerTest() { load("abc"); }
    ~LoopPlayerTest() override { LoopSetting::setSpeed(LoopSpeed::normal); }

    /// Frames with these letters as their paths and times.
    void load(const std::string& letters) {
        state.frames.clear();
        for (const char letter : letters) {
            const QString name(QLatin1Char{letter});
            state.frames.push_back({nullptr, name, name});
        }
        state.frameCount = static_cast<int>(letters.size());
        state.position = 0;
        state.animationCounter = 1;
        state.current = state.frames.empty() ? RadarFrame{} : state.frames.front();
    }
    [[nodiscard]] std::string shown() const { return state.current.path.toStdString(); }
    /// What is shown after each of some ticks; "-" for nothing.
    std::string ticks(int count) {
        std::string seen;
        for (int i = 0; i < count; ++i) {
            static_cast<void>(player.tick());
            seen += shown().empty() ? "-" : shown();
        }
        return seen;
    }

    RadarState state;
    ManualTimers timers;
    int steps = 0;
    LoopPlayer player{state, timers, [this] { ++steps; }};
};

TEST_F(LoopPlayerTest, UntouchedItIsTheUsualLoop) {
    EXPECT_TRUE(player.playing());
    EXPECT_EQ(ticks(14), "abccc-abccc-ab");
    EXPECT_THAT(timers.running(), IsEmpty());
    EXPECT_EQ(steps, 0);
}

TEST_F(LoopPlayerTest, PausedItPaintsNothing) {
    ticks(2);
    player.pause();
    EXPECT_FALSE(player.playing());
    EXPECT_FALSE(player.tick());
    EXPECT_EQ(ticks(5), "bbbbb");
    player.play();
    EXPECT_EQ(ticks(6), "ccc-ab");
}

TEST_F(LoopPlayerTest, PausedBetweenTwoRoundsItShowsTheNewest) {
    EXPECT_EQ(ticks(6), "abccc-");
    EXPECT_EQ(player.shown(), 2U);
    player.pause();
    EXPECT_EQ(shown(), "c");
}

TEST_F(LoopPlayerTest, PlayingFromTheNewestBeginsWithTheOldestAtOnce) {
    player.show(2);
    EXPECT_FALSE(player.playing());
    player.play();
    EXPECT_EQ(shown(), "a");
    EXPECT_EQ(ticks(5), "bccc-");
}

TEST_F(LoopPlayerTest, StepsGoRoundAndStay) {
    player.step(1);
    EXPECT_EQ(shown(), "b");
    player.step(1);
    player.step(1);
    EXPECT_EQ(shown(), "a");
    player.step(-1);
    EXPECT_EQ(shown(), "c");
    player.step(-1);
    EXPECT_EQ(shown(), "b");
    EXPECT_EQ(ticks(3), "bbb");
}

TEST_F(LoopPlayerTest, AFrameThatIsNotThereIsNotShown) {
    player.show(3);
    EXPECT_EQ(shown(), "a");
    EXPECT_TRUE(player.playing());
    load("");
    player.step(1);
    player.pause();
    EXPECT_EQ(player.shown(), std::nullopt);
    EXPECT_FALSE(player.hasLoop());
}

TEST_F(LoopPlayerTest, OtherSpeedsHaveAClockOfTheirOwn) {
    const std::pair<LoopSpeed, int> rows[] = {
        {LoopSpeed::half, 1000}, {LoopSpeed::twice, 250}, {LoopSpeed::fourTimes, 125}};
    for (const auto& [speed, milliseconds] : rows) {
        load("abc");
        steps = 0;
        LoopSetting::setSpeed(speed);
        EXPECT_FALSE(player.tick());
        EXPECT_FALSE(player.tick());
        EXPECT_THAT(timers.running(), ElementsAre(milliseconds));
        std::string seen;
        for (int i = 0; i < 8; ++i) {
            EXPECT_EQ(timers.fire(), milliseconds);
            seen += shown().empty() ? "-" : shown();
        }
        EXPECT_EQ(seen, "abccc-ab");
        EXPECT_EQ(steps, 8);
        player.stopClock();
        EXPECT_THAT(timers.running(), IsEmpty());
    }
}

TEST_F(LoopPlayerTest, TheClockStopsWithTheLoop) {
    LoopSetting::setSpeed(LoopSpeed::twice);
    static_cast<void>(player.tick());
    player.pause();
    EXPECT_THAT(timers.running(), IsEmpty());
    player.play();
    static_cast<void>(player.tick());
    LoopSetting::setSpeed(LoopSpeed::normal);
    timers.fire();
    EXPECT_EQ(steps, 0);
    EXPECT_THAT(timers.running(), IsEmpty());
    EXPECT_TRUE(player.tick());
}

TEST_F(LoopPlayerTest, NothingMovesDuringAWait) {
    LoopSetting::setSpeed(LoopSpeed::twice);
    static_cast<void>(player.tick());
    {
        const BusyGuard busy;
        timers.fire();
    }
    EXPECT_EQ(steps, 0);
    static_cast<void>(player.tick());
    EXPECT_THAT(timers.running(), ElementsAre(250));
}

TEST_F(LoopPlayerTest, AnUpdateKeepsTheFrameThatIsLookedAt) {
    player.show(1);
    load("bcd");
    player.framesChanged();
    EXPECT_EQ(shown(), "b");
    EXPECT_EQ(ticks(2), "bb");
    load("def");
    player.framesChanged();
    EXPECT_EQ(shown(), "f") << "it is gone";
}

TEST_F(LoopPlayerTest, WhoLooksAtTheNewestSeesTheNewest) {
    player.show(2);
    load("bcd");
    player.framesChanged();
    EXPECT_EQ(shown(), "d");
    load("");
    player.framesChanged();
    load("xy");
    player.framesChanged();
    EXPECT_EQ(shown(), "y");
}

TEST_F(LoopPlayerTest, AnUpdateLeavesALoopThatPlays) {
    ticks(2);
    load("xyz");
    player.framesChanged();
    EXPECT_EQ(shown(), "x");
    EXPECT_EQ(ticks(3), "xyz");
}

} // namespace
} // namespace raincast
