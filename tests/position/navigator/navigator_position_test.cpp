// SPDX-License-Identifier: MIT
#include "position/data_gps_position.h"
#include "position/navigator/fake_navigator.h"
#include "position/navigator/navigator_position.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using testing::ElementsAre;

NavigatorStatus statusOf(const tl::expected<NavigatorPosition, NavigatorStatus>& result) {
    return result ? kNavigatorSuccess : result.error();
}

class NavigatorPositionTest : public testing::Test {
protected:
    NavigatorPositionTest() {
        navigator.runs = true;
        EXPECT_EQ(ConnectNavigator(link, false), kNavigatorSuccess);
        navigator.takeCalls();
    }

    FakeNavigator navigator;
    NavigatorLink link;
};

TEST_F(NavigatorPositionTest, TheRecordIsReadInItsOrder) {
    navigator.position = {43.5, -79.25, 271.5, 6.25, 74.75, 1'174'653'319, 1, 12.5, -3.5};
    const auto position = getNavigatorPosition(link);
    ASSERT_TRUE(position);
    EXPECT_EQ(position->latitude, 43.5);
    EXPECT_EQ(position->longitude, -79.25);
    EXPECT_EQ(position->course, 271.5F);
    EXPECT_EQ(position->speed, 6.25F);
    EXPECT_EQ(position->altitude, 74.75F);
    EXPECT_EQ(position->unixSeconds, 1'174'653'319U);
    EXPECT_TRUE(position->valid);
    EXPECT_EQ(position->extra1, 12.5F);
    EXPECT_EQ(position->extra2, -3.5F);
    EXPECT_THAT(navigator.calls, ElementsAre("wait", "send 32772", "release"));
}

TEST_F(NavigatorPositionTest, ANavigatorThatDoesNotKnowTheNewerRequestIsAskedByTheOlder) {
    navigator.answers[32772] = 11;
    navigator.position.latitude = 5;
    const auto position = getNavigatorPosition(link);
    ASSERT_TRUE(position);
    EXPECT_EQ(position->latitude, 5);
    EXPECT_THAT(
        navigator.calls, ElementsAre("wait", "send 32772", "release", "wait", "send 31", "release")
    );
}

TEST_F(NavigatorPositionTest, TheOlderRequestsAnswerStands) {
    navigator.answers[32772] = 11;
    for (const std::uint32_t answer : {11U, 12U, 99U}) {
        navigator.answers[31] = answer;
        EXPECT_EQ(statusOf(getNavigatorPosition(link)), answer);
    }
}

TEST_F(NavigatorPositionTest, AnyOtherAnswerStandsAtOnce) {
    for (const std::uint32_t answer : {4U, 12U, 99U}) {
        navigator.answers[32772] = answer;
        navigator.takeCalls();
        EXPECT_EQ(statusOf(getNavigatorPosition(link)), answer);
        EXPECT_THAT(navigator.calls, ElementsAre("wait", "send 32772", "release"));
    }
}

TEST_F(NavigatorPositionTest, AFileCutAnywhereIsStatus8) {
    navigator.writesFile = false;
    navigator.position = {43.5, -79.25, 271.5, 6.25, 74.75, 1'174'653'319, 1, 12.5, -3.5};
    for (int size = 0; size <= 64; ++size) {
        writeFile(navigator.home.sharedFile(), navigator.position.bytes().left(size));
        EXPECT_EQ(
            statusOf(getNavigatorPosition(link)),
            size < 64 ? kNavigatorFileFailed : kNavigatorSuccess
        ) << size;
    }
    writeFile(navigator.home.sharedFile(), navigator.position.bytes() + "more");
    EXPECT_TRUE(getNavigatorPosition(link));
}

TEST_F(NavigatorPositionTest, APositionIsWrittenInTheSameOrder) {
    CDataGPSPosition told;
    told.latitude = -33.5;
    told.longitude = 151.25;
    told.course = 12.5F;
    told.speed = 0.1F;
    told.altitude = 30;
    told.time = fromCalendar({2007, 3, 23, 12, 35, 19});
    told.fixType = kFixPrecise;
    EXPECT_EQ(setNavigatorPosition(link, told), kNavigatorSuccess);
    EXPECT_THAT(navigator.calls, ElementsAre("wait", "send 32", "release"));
    // 0.1F and extra1's 400 are widened, any fix is 1.
    const PositionRecord expected{-33.5, 151.25, 12.5, double{0.1F}, 30, 1'174'653'319, 1, 400, 0};
    EXPECT_EQ(navigator.told.toHex(), expected.bytes().toHex());

    told.fixType = kFixNone;
    EXPECT_EQ(setNavigatorPosition(link, told), kNavigatorSuccess);
    EXPECT_EQ(navigator.told.mid(44, 4), QByteArray(4, '\0'));
}

TEST_F(NavigatorPositionTest, WhatCannotBeWrittenIsAShortFileAndNoMore) {
    QDir().mkdir(navigator.home.sharedFile()); // in the way
    EXPECT_EQ(setNavigatorPosition(link, {}), kNavigatorSuccess);
    EXPECT_THAT(navigator.calls, ElementsAre("wait", "send 32", "release"));
}

TEST_F(NavigatorPositionTest, TheStatusOfSettingIsTheNavigators) {
    navigator.answers[32] = 11;
    EXPECT_EQ(setNavigatorPosition(link, {}), kNavigatorUnknownRequest);
    navigator.diesAtNextRequest = true;
    EXPECT_EQ(setNavigatorPosition(link, {}), kNavigatorGone);
}

TEST_F(NavigatorPositionTest, NothingIsToldWithoutALink) {
    DisconnectNavigator(link, false);
    EXPECT_EQ(statusOf(getNavigatorPosition(link)), kNavigatorGone);
    EXPECT_EQ(setNavigatorPosition(link, {}), kNavigatorGone);
    EXPECT_FALSE(QFile::exists(navigator.home.sharedFile()));
}

} // namespace
} // namespace raincast
