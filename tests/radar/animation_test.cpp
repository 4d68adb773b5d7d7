// SPDX-License-Identifier: MIT
#include "radar/animation.h"

#include <QImage>

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace raincast {
namespace {

RadarState stateOf(int frames) {
    RadarState state;
    state.frameCount = frames;
    for (int i = 0; i < frames; ++i) {
        state.frames.push_back({nullptr, QString::number(i), QString()});
    }
    return state;
}

/// What is shown after each of so many ticks; "-" for nothing.
std::string shown(RadarState& state, int ticks) {
    std::string result;
    for (int i = 0; i < ticks; ++i) {
        EXPECT_TRUE(stepAnimation(state));
        result += state.current.timeText.isEmpty() ? "-" : state.current.timeText.toStdString();
    }
    return result;
}

TEST(AnimationTest, TheNewestFrameStaysThreeTicksAndOneIsBlank) {
    RadarState state = stateOf(6);
    rewindAnimation(state);
    EXPECT_EQ(state.current.timeText, QStringLiteral("0"));
    // The rewound state shows its oldest frame before the first tick and on it.
    EXPECT_EQ(shown(state, 6), "012345");
    while (state.position != 0) {
        EXPECT_TRUE(stepAnimation(state));
    }
    EXPECT_EQ(shown(state, 18), "01234555-01234555-");
}

TEST(AnimationTest, RightAfterAnUpdateTheLoopBeginsOnTheSecondTick) {
    RadarState state = stateOf(3);
    state.position = 2; // the newest, as an update leaves it
    state.current = state.frames[2];
    state.animationCounter = state.frameCount + 10;
    EXPECT_EQ(shown(state, 8), "2-01222-");
}

TEST(AnimationTest, APictureStaysUntilTheNextOneIsLoaded) {
    const auto picture = std::make_shared<QImage>(1, 1, QImage::Format_RGB32);
    RadarState state = stateOf(3);
    state.frames[0].bitmap = picture;
    rewindAnimation(state);
    EXPECT_EQ(shown(state, 1), "0");
    EXPECT_FALSE(stepAnimation(state));
    EXPECT_EQ(state.current.timeText, QStringLiteral("0"));
    state.frames[1].bitmap = state.frames[2].bitmap = picture;
    EXPECT_EQ(shown(state, 7), "12222-0");
}

TEST(AnimationTest, FewerThanTwoFramesNeverMove) {
    for (const int frames : {0, 1}) {
        RadarState state = stateOf(frames);
        state.animate = true;
        rewindAnimation(state);
        const QString before = state.current.timeText;
        EXPECT_FALSE(stepAnimation(state));
        EXPECT_EQ(state.current.timeText, before);
        EXPECT_EQ(state.animationCounter, 0);
    }
}

TEST(AnimationTest, RewindingWithoutFramesShowsNothing) {
    RadarState state;
    state.current.timeText = QStringLiteral("1:05");
    rewindAnimation(state);
    EXPECT_EQ(state.current.timeText, QString());
}

TEST(AnimationTest, NothingIsDueUnlessUpdatesAreAutomatic) {
    RadarState state;
    EXPECT_FALSE(updateIsDue(state, 1));
    state.autoUpdate = true;
    EXPECT_TRUE(updateIsDue(state, 1)); // never fetched
    state.nextUpdate = 100;
    EXPECT_FALSE(updateIsDue(state, 100));
    EXPECT_TRUE(updateIsDue(state, 101));
}

TEST(AnimationTest, AClockFarAheadIsCaughtUpInStepsOfFiveMinutes) {
    RadarState state;
    state.autoUpdate = true;
    state.nextUpdate = kFileTimePerMinute;
    const FileTime now = 12 * kFileTimePerMinute;
    int updates = 0;
    while (updateIsDue(state, now)) {
        ++updates;
        postponeUpdate(state, now);
    }
    EXPECT_EQ(updates, 3);
    EXPECT_EQ(state.nextUpdate, 16 * kFileTimePerMinute);
    postponeUpdate(state, now);
    EXPECT_EQ(state.nextUpdate, 16 * kFileTimePerMinute);
}

} // namespace
} // namespace raincast
