// SPDX-License-Identifier: MIT
// When the radar item moves and updates by itself: half-seconds of the program's clock, one by one.
#include "core/replay_clock.h"
#include "support/fault_server.h"
#include "weather_page.h"

namespace raincast {
namespace {

using test::DialogScript;

const QString kFrames = test::framesPath("MUX");

class ItemWeatherUpdatesTest : public test::WeatherPage {
protected:
    void publishSix() {
        publishFrames(
            {"20190519_0504", "20190519_0514", "20190519_0524", "20190519_0534", "20190519_0544",
             "20190519_0554"}
        );
    }
    /// The times that are on the screen at that many ticks, "-" for none.
    std::string timesOf(int ticks) {
        std::string seen;
        for (int i = 0; i < ticks; ++i) {
            tick();
            seen += shown().empty() ? " -" : " " + shown();
        }
        return seen;
    }
    [[nodiscard]] int updates() const { return m_server.count(kFrames); }
};

TEST_F(ItemWeatherUpdatesTest, SixFramesInTheirRhythm) {
    publishSix();
    showSite();
    editAnimation(6);
    EXPECT_EQ(timesOf(2), " 5:54 -");
    for (int loop = 0; loop < 2; ++loop) {
        EXPECT_EQ(timesOf(9), " 5:04 5:14 5:24 5:34 5:44 5:54 5:54 5:54 -") << loop;
    }
}

TEST_F(ItemWeatherUpdatesTest, AFrameStandsForFiveBeats) {
    showSite();
    editAnimation(3);
    CHeartbeat::usePhaseSource([] { return 0; }); // the first tick comes with the first beat
    restart();
    CHeartbeat::usePhaseSource(nullptr);
    showPage();
    m_clock.set(fromCalendar({2019, 5, 19, 6, 0}));
    std::vector<int> moves;
    for (int beat = 1; beat <= 16; ++beat) {
        const std::size_t before = m_item->state().position;
        CHeartbeat::program().Beat();
        if (m_item->state().position != before) {
            moves.push_back(beat);
        }
    }
    EXPECT_THAT(moves, testing::ElementsAre(1, 6, 11));
}

TEST_F(ItemWeatherUpdatesTest, InTheBlankTickRadarAndTimeAreGoneAndTheMapStays) {
    showSite();
    editAnimation(3);
    const QPoint echo(202 - 150, 150);
    EXPECT_EQ(drawn().pixel(echo), 0xFFFF0000);
    EXPECT_EQ(timesOf(2), " 5:54 -");
    const QImage blank = drawn();
    EXPECT_EQ(qGreen(blank.pixel(echo)), 120);
    EXPECT_EQ(qGreen(blank.pixel(4, 275)), 120) << "where the time stands";
}

TEST_F(ItemWeatherUpdatesTest, ASingleFrameNeverMoves) {
    publishFrames({"20190519_0554"});
    showSite();
    editAnimation(6);
    EXPECT_EQ(m_item->state().frames.size(), 1U);
    EXPECT_EQ(m_item->statusText(), "Could not get\nall images.\n");
    EXPECT_EQ(timesOf(4), " 5:54 5:54 5:54 5:54");
}

TEST_F(ItemWeatherUpdatesTest, AShownPageThatComesBackMovesOnFromWhereItStood) {
    showSite();
    editAnimation(3);
    EXPECT_EQ(timesOf(3), " 5:54 - 5:34");
    m_page->deactivate();
    EXPECT_EQ(timesOf(5), " 5:34 5:34 5:34 5:34 5:34");
    showPage();
    EXPECT_EQ(timesOf(2), " 5:44 5:54");
    EXPECT_EQ(updates(), 2);
}

TEST_F(ItemWeatherUpdatesTest, WithoutAutoUpdateNoTickUpdates) {
    showSite();
    for (const int year : {2019, 2030, 2400}) {
        beatAt(fromCalendar({year, 6, 1}));
    }
    EXPECT_EQ(updates(), 1);
}

TEST_F(ItemWeatherUpdatesTest, WhatWasNeverFetchedIsUpdatedAtTheFirstTick) {
    showSite();
    editAnimation(2, true);
    restart();
    showPage();
    const int before = updates();
    EXPECT_EQ(m_item->state().nextUpdate, 0);
    beatAt(fromCalendar({2019, 5, 19, 6, 0}));
    EXPECT_EQ(updates(), before + 1);
    beatAt(fromCalendar({2019, 5, 19, 6, 1}));
    EXPECT_EQ(updates(), before + 1);
}

TEST_F(ItemWeatherUpdatesTest, InAReplayTheWeathersClockSaysWhen) {
    const FileTime world = fromCalendar({2020, 1, 1, 0, 0});
    m_clock.set(world);
    const ReplayClock clock({fromCalendar({2019, 5, 19, 6, 0}), 60}, world);
    Clock::replayBy(&clock);
    showSite();
    editAnimation(2, true);
    const int before = updates();
    // Due at half past 6:02.
    beatAt(world + 2 * kFileTimePerSecond);
    EXPECT_EQ(updates(), before);
    beatAt(world + 3 * kFileTimePerSecond);
    EXPECT_EQ(updates(), before + 1);
    Clock::replayBy(nullptr);
}

TEST_F(ItemWeatherUpdatesTest, AfterALongPauseEveryTickUpdatesUntilItHasCaughtUp) {
    showSite();
    editAnimation(2, true);
    const int before = updates();
    // Due at half past 6:02, then in steps of five minutes: 6:07, 6:12, 6:17 and 6:22.
    beatAt(fromCalendar({2019, 5, 19, 6, 21}));
    EXPECT_EQ(updates(), before + 1);
    for (int i = 2; i < 7; ++i) {
        tick();
        EXPECT_EQ(updates(), before + std::min(i, 4));
    }
    EXPECT_EQ(m_item->state().nextUpdate, fromCalendar({2019, 5, 19, 6, 22, 30}));
}

TEST_F(ItemWeatherUpdatesTest, ATickThatStartsAnUpdateStillAnimates) {
    showSite();
    editAnimation(3, true);
    EXPECT_EQ(timesOf(3), " 5:54 - 5:34");
    const FaultServer silent(answers::silence());
    ServersSetting::set({silent.host(), silent.host()});
    beginBeatAt(fromCalendar({2019, 5, 19, 6, 3}));
    EXPECT_TRUE(m_item->loading());
    EXPECT_EQ(shown(), "5:44") << "the loop goes on meanwhile";
    beginBeatAt(fromCalendar({2019, 5, 19, 6, 3, 1}));
    EXPECT_EQ(shown(), "5:54");
}

TEST_F(ItemWeatherUpdatesTest, AnUpdateThatFailsIsTriedAgainAfterFiveMinutes) {
    showSite();
    editAnimation(2, true);
    m_server.serve(kFrames, "", 503);
    const int before = updates();
    beatAt(fromCalendar({2019, 5, 19, 6, 3}));
    EXPECT_EQ(updates(), before + 1);
    EXPECT_EQ(m_item->statusText(), "No radar images found on server.\n");
    EXPECT_EQ(m_item->state().frames.size(), 2U) << "those of before stay";
    publishFrames({"20190519_0554", "20190519_0604"});
    beatAt(fromCalendar({2019, 5, 19, 6, 7}));
    EXPECT_EQ(updates(), before + 1) << "due at 6:07, and not before";
    beatAt(fromCalendar({2019, 5, 19, 6, 8}));
    EXPECT_EQ(updates(), before + 2);
    EXPECT_EQ(shown(), "6:04");
    EXPECT_EQ(m_item->statusText(), QString());
}

TEST_F(ItemWeatherUpdatesTest, AfterAFailureTheNextOnesWaitLongerAndLonger) {
    showSite();
    editAnimation(2, true);
    m_server.serve(kFrames, "", 503);
    // Hours later an update is due on each tick.
    FileTime now = fromCalendar({2019, 5, 19, 18, 0});
    beatAt(now);
    int made = updates();
    for (const int seconds : {30, 60, 120, 240, 300, 300}) {
        beatAt(now + (seconds - 1) * kFileTimePerSecond);
        EXPECT_EQ(updates(), made) << "not before " << seconds;
        now += seconds * kFileTimePerSecond;
        beatAt(now);
        EXPECT_EQ(updates(), ++made) << seconds;
    }
    // The user does not wait, and a success ends the wait.
    publishFrames({"20190519_0554", "20190519_0604"});
    update();
    EXPECT_EQ(updates(), ++made);
    beatAt(now + kFileTimePerSecond);
    EXPECT_EQ(updates(), ++made) << "the catching up goes on";
}

TEST_F(ItemWeatherUpdatesTest, AClockThatIsSetBackDoesNotKeepUpdatesWaiting) {
    showSite();
    editAnimation(2, true);
    m_server.serve(kFrames, "", 503);
    beatAt(fromCalendar({2019, 5, 20, 6, 0}));
    const int before = updates();
    beatAt(fromCalendar({2019, 5, 19, 18, 0}));
    EXPECT_EQ(updates(), before + 1);
}

// It had been a day ahead, and so is what was to come next.
TEST_F(ItemWeatherUpdatesTest, AfterAClockWasSetBackADayTheNextUpdateIsNotADayAway) {
    publishFrames({"20190519_0554"});
    showSite();
    editAnimation(2, true);
    beatAt(fromCalendar({2019, 5, 18, 6, 0}));
    const int before = updates();
    beatAt(fromCalendar({2019, 5, 18, 6, 4}));
    EXPECT_EQ(updates(), before);
    beatAt(fromCalendar({2019, 5, 18, 6, 6}));
    EXPECT_EQ(updates(), before + 1);
}

} // namespace
} // namespace raincast
