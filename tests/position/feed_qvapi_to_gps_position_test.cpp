// SPDX-License-Identifier: MIT
#include "core/busy_guard.h"
#include "position/feed_qvapi_to_gps_position.h"
#include "position/feed_rmc_to_gps_position.h"
#include "position/navigator/fake_navigator.h"
#include "position/nmea/nmea_reader.h"
#include "support/manual_phase.h"
#include "support/record_listeners.h"
#include "support/test_clock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>

namespace raincast {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

using Calls = std::vector<std::string>;

constexpr char kFind[] = "find WCE_QVTrekkoMainWnd";
constexpr char kMutex[] = "mutex Quorvane-API-mutex";
const Calls kGet{"wait", "send 32772", "release"};
const Calls kSet{"wait", "send 32", "release"};
constexpr char kRmc[] = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230307,003.1,W\n";

/// A position that is shown somewhere.
class ShownPosition : public PublishedPosition {
public:
    int lost = 0;

private:
    void drawAsLost() override {
        PublishedPosition::drawAsLost();
        ++lost;
    }
};

class FeedQvapiTest : public testing::Test {
protected:
    /// What the navigator's port is asked in so many ticks of the feed.
    Calls tick(int times = 1) {
        navigator.takeCalls();
        for (int i = 0; i < 10 * times; ++i) {
            clock.advance(kFileTimePerSecond / 10);
            heartbeat.Beat();
        }
        return navigator.takeCalls();
    }
    void link() {
        navigator.runs = true;
        EXPECT_THAT(tick(), Contains("send 32772"));
        EXPECT_TRUE(feed->linked());
    }
    void linkWithFix() {
        navigator.position = {43.5, -79.25, 271.5, 6.25, 0, 1'174'653'319, 1, 0, 0};
        link();
    }
    Calls publishOther() {
        navigator.takeCalls();
        CDataGPSPosition other;
        other.latitude = 48;
        other.fixType = kFixGps;
        Listener<CDataGPSPosition>::Notify(other);
        return navigator.takeCalls();
    }
    const CDataGPSPosition& last() const { return positions.records.back(); }

    TestClock clock;
    ManualPhase phase{9}; // the tenth beat
    CHeartbeat heartbeat;
    FakeNavigator navigator;
    RecordListener<CDataGPSPosition> positions;
    ShownPosition shown;
    NavigatorLink navigatorLink;
    std::optional<CFeedQVAPI_to_GPSPosition> feed{std::in_place, shown, navigatorLink};
};

TEST_F(FeedQvapiTest, AnAbsentNavigatorIsLookedForAtOnceAndThenAtEvery11thTick) {
    for (int round = 0; round < 3; ++round) {
        EXPECT_THAT(tick(), ElementsAre(kFind)) << round;
        EXPECT_THAT(tick(10), IsEmpty()) << round;
    }
    EXPECT_FALSE(feed->linked());
    EXPECT_THAT(positions.records, IsEmpty());
    EXPECT_EQ(namesIn(navigator.home.root()), "config run temp");
    EXPECT_EQ(namesIn(navigator.home.path("temp")), "");
}

TEST_F(FeedQvapiTest, ALinkedNavigatorIsAskedOnceATickFromTheFirstOn) {
    navigator.runs = true;
    EXPECT_THAT(tick(), ElementsAre(kFind, kMutex, "wait", "send 32772", "release"));
    EXPECT_EQ(tick(), kGet);
    EXPECT_EQ(tick(), kGet);
    EXPECT_EQ(positions.records.size(), 3U);
}

TEST_F(FeedQvapiTest, PlaceMotionAndTimeAreTakenAndNothingElse) {
    navigator.position = {43.5, -79.25, 271.5, 6.25, 74.75, 1'174'653'319, 1, 12.5, -3.5};
    link();
    ASSERT_EQ(positions.records.size(), 1U);
    EXPECT_EQ(last().latitude, 43.5);
    EXPECT_EQ(last().longitude, -79.25);
    EXPECT_EQ(last().course, 271.5F);
    EXPECT_EQ(last().speed, 6.25F);
    EXPECT_EQ(last().time, fromCalendar({2007, 3, 23, 12, 35, 19}));
    EXPECT_EQ(last().fixType, kFixGps);
    EXPECT_EQ(last().altitude, 0);
    EXPECT_EQ(last().extra1, 400);
    EXPECT_EQ(last().extra2, 0);
    navigator.position.valid = 0;
    tick();
    EXPECT_EQ(last().fixType, kFixNone);
    navigator.position.valid = 0x100; // non-zero is true
    tick();
    EXPECT_EQ(last().fixType, kFixGps);
}

TEST_F(FeedQvapiTest, OnlyFiniteNumbersArePublished) {
    const double infinite = std::numeric_limits<double>::infinity();
    const double odd[] = {std::nan(""), infinite, -infinite, 1e300, -1e300};
    navigator.position = {43.5, -79.25, 271.5, 6.25, 0, 1'174'653'319, 1, 0, 0};
    link();
    for (double PositionRecord::*field :
         {&PositionRecord::latitude, &PositionRecord::longitude, &PositionRecord::course,
          &PositionRecord::speed, &PositionRecord::altitude, &PositionRecord::extra1,
          &PositionRecord::extra2}) {
        for (const double value : odd) {
            const PositionRecord before = navigator.position;
            navigator.position.*field = value;
            tick();
            navigator.position = before;
            EXPECT_TRUE(std::isfinite(last().latitude) && std::isfinite(last().longitude));
            EXPECT_TRUE(std::isfinite(last().course) && std::isfinite(last().speed));
            EXPECT_TRUE(std::isfinite(last().altitude));
            EXPECT_TRUE(feed->linked());
        }
    }
    EXPECT_EQ(positions.records.size(), 1 + 7 * std::size(odd));
}

TEST_F(FeedQvapiTest, APlaceThatIsNoNumberIsNoFixAtTheLastPlaceKnown) {
    navigator.position = {43.5, -79.25, 271.5, 6.25, 0, 1'174'653'319, 1, 0, 0};
    link();
    for (double PositionRecord::*field : {&PositionRecord::latitude, &PositionRecord::longitude}) {
        navigator.position = {44.5, -78.25, 90, 1, 0, 1'174'653'320, 1, 0, 0};
        navigator.position.*field = std::nan("");
        tick();
        EXPECT_EQ(last().fixType, kFixNone);
        EXPECT_EQ(last().latitude, 43.5);
        EXPECT_EQ(last().longitude, -79.25);
        EXPECT_EQ(last().time, fromCalendar({2007, 3, 23, 12, 35, 20}));
    }
    navigator.position = {44.5, -78.25, 90, 1, 0, 1'174'653'320, 1, 0, 0};
    tick();
    EXPECT_EQ(last().fixType, kFixGps);
    EXPECT_EQ(last().latitude, 44.5);
}

TEST_F(FeedQvapiTest, AMissingFolderLeavesItUnlinkedAndTriedEvery11Ticks) {
    navigator.runs = true;
    navigator.home.forgetFolder();
    EXPECT_THAT(tick(), ElementsAre(kFind, kMutex));
    EXPECT_FALSE(feed->linked());
    EXPECT_THAT(tick(10), IsEmpty());
    EXPECT_THAT(tick(), ElementsAre(kFind, kMutex));
    navigator.home.setFolder(navigator.home.path("temp"));
    EXPECT_THAT(tick(10), IsEmpty());
    EXPECT_THAT(tick(), Contains("send 32772"));
    EXPECT_TRUE(feed->linked());
}

TEST_F(FeedQvapiTest, NoPositionAtPresentKeepsTheLink) {
    link();
    navigator.answers[32772] = 12;
    EXPECT_EQ(tick(), kGet);
    EXPECT_EQ(tick(), kGet);
    EXPECT_TRUE(feed->linked());
    EXPECT_EQ(positions.records.size(), 1U);
    navigator.answers[32772] = 11;
    navigator.answers[31] = 12;
    EXPECT_THAT(tick(), Contains("send 31"));
    EXPECT_TRUE(feed->linked());
}

TEST_F(FeedQvapiTest, AnOlderNavigatorIsAskedAgainInASecondTransaction) {
    navigator.answers[32772] = 11;
    link();
    EXPECT_THAT(tick(), ElementsAre("wait", "send 32772", "release", "wait", "send 31", "release"));
    EXPECT_EQ(positions.records.size(), 2U);
}

TEST_F(FeedQvapiTest, AnyOtherStatusUnlinksFor11Ticks) {
    for (const std::uint32_t status : {1U, 4U, 8U, 99U}) {
        feed.emplace(shown, navigatorLink);
        navigator.answers = {};
        link();
        navigator.answers[32772] = status;
        EXPECT_EQ(tick(), kGet);
        EXPECT_FALSE(feed->linked()) << status;
        EXPECT_FALSE(navigatorLink.window);
        EXPECT_THAT(tick(10), IsEmpty()) << status;
        EXPECT_THAT(tick(), Contains(kFind)) << status;
    }
}

// Asked again by the older request, and not understood either.
TEST_F(FeedQvapiTest, ANavigatorThatUnderstandsNothingIsUnlinked) {
    link();
    navigator.answers[32772] = 11;
    navigator.answers[31] = 11;
    EXPECT_THAT(tick(), ElementsAre("wait", "send 32772", "release", "wait", "send 31", "release"));
    EXPECT_FALSE(feed->linked());
}

TEST_F(FeedQvapiTest, ANavigatorThatFellSilentIsLostAfterNineSeconds) {
    for (const bool dies : {true, false}) {
        navigator.answers = {};
        feed.emplace(shown, navigatorLink);
        linkWithFix();
        const std::size_t before = positions.records.size();
        if (dies) {
            navigator.runs = false;
        } else {
            navigator.answers[32772] = 12; // no position at present
        }
        tick(8);
        EXPECT_TRUE(shown.published().valid()) << dies;
        EXPECT_EQ(positions.records.size(), before);
        tick();
        EXPECT_FALSE(shown.published().valid()) << dies;
        ASSERT_EQ(positions.records.size(), before + 1) << "maps hear of it, once";
        EXPECT_EQ(last().fixType, kFixNone);
        EXPECT_EQ(last().latitude, navigator.position.latitude) << "the last known place";
        tick(30);
        EXPECT_EQ(positions.records.size(), before + 1);
        EXPECT_EQ(feed->linked(), !dies);
    }
}

TEST_F(FeedQvapiTest, ANavigatorThatComesBackIsLiveAgain) {
    linkWithFix();
    navigator.answers[32772] = 12;
    tick(12);
    EXPECT_FALSE(shown.published().valid());
    navigator.answers = {};
    tick();
    EXPECT_TRUE(shown.published().valid());
    EXPECT_EQ(last().fixType, kFixGps);
}

TEST_F(FeedQvapiTest, WithoutAFixItsSilenceIsNoNews) {
    linkWithFix();
    navigator.position.valid = 0;
    tick();
    navigator.answers[32772] = 12;
    tick(30);
    EXPECT_EQ(positions.records.size(), 2U);
}

// Of two positions the older one would be taken for a second boat.
TEST_F(FeedQvapiTest, WhileAReceiverPublishesTheNavigatorsPositionIsDrawnAsLost) {
    PublishedPosition received;
    CFeedRMC_to_GPSPosition receiver(received);
    NmeaReader reader;
    linkWithFix();
    for (int second = 1; second < 30; ++second) {
        reader.feed(kRmc);
        tick();
        EXPECT_TRUE(received.published().valid());
        EXPECT_EQ(shown.published().valid(), second < 9) << second;
    }
    EXPECT_EQ(shown.lost, 1) << "the maps draw it anew, once";
    for (const CDataGPSPosition& position : positions.records) {
        EXPECT_TRUE(position.valid()) << "the user's position is not lost";
    }
    tick(7); // the receiver falls silent, and the navigator is asked again
    EXPECT_TRUE(received.published().valid());
    tick();
    EXPECT_FALSE(received.published().valid());
    tick(11);
    EXPECT_TRUE(shown.published().valid());
}

TEST_F(FeedQvapiTest, AReceiverThatFellSilentInTheSameTickHasTheLatestPosition) {
    PublishedPosition received;
    CFeedRMC_to_GPSPosition receiver(received);
    NmeaReader reader;
    linkWithFix();
    reader.feed(kRmc);
    navigator.answers[32772] = 12;
    tick(9);
    EXPECT_FALSE(shown.published().valid());
    EXPECT_EQ(shown.lost, 1) << "drawn as lost, not published";
}

TEST_F(FeedQvapiTest, AShortFileUnlinks) {
    link();
    navigator.writesFile = false;
    writeFile(navigator.home.sharedFile(), navigator.position.bytes().left(63));
    tick();
    EXPECT_FALSE(feed->linked());
    EXPECT_EQ(positions.records.size(), 1U);
}

TEST_F(FeedQvapiTest, ANavigatorThatWentIsFoundAgain) {
    link();
    navigator.runs = false;
    EXPECT_THAT(tick(), ElementsAre("wait", "release"));
    EXPECT_FALSE(feed->linked());
    navigator.runs = true;
    EXPECT_THAT(tick(10), IsEmpty());
    EXPECT_THAT(tick(), Contains("send 32772"));
    EXPECT_TRUE(feed->linked());
}

TEST_F(FeedQvapiTest, WhatAnotherSourcePublishesIsToldAndItsOwnIsNotEchoed) {
    link();
    EXPECT_EQ(tick(), kGet) << "no echo";
    EXPECT_EQ(publishOther(), kSet);
    PositionRecord told;
    told.latitude = 48;
    told.valid = 1;
    told.extra1 = 400;
    EXPECT_EQ(navigator.told.left(40).toHex(), told.bytes().left(40).toHex());
    EXPECT_EQ(navigator.told.mid(44).toHex(), told.bytes().mid(44).toHex());
}

TEST_F(FeedQvapiTest, TheReceiversSentencesAreTold) {
    PublishedPosition received;
    CFeedRMC_to_GPSPosition receiver(received);
    NmeaReader reader;
    link();
    navigator.takeCalls();
    reader.feed(kRmc);
    EXPECT_EQ(navigator.takeCalls(), kSet);
    EXPECT_EQ(
        navigator.told.toHex(), (PositionRecord{
                                    48.1173, 11 + 31 * 0.016666666666666666, double{84.4F},
                                    double{22.4F}, 0, 1'174'653'319, 1, 400, 0}
                                     .bytes()
                                     .toHex())
    );
}

TEST_F(FeedQvapiTest, AfterAnotherSourceFellSilentPollingResumesAtThe11thTick) {
    link();
    publishOther();
    EXPECT_THAT(tick(10), IsEmpty());
    EXPECT_EQ(tick(), kGet);
    publishOther();
    tick(10);
    publishOther(); // in time
    EXPECT_THAT(tick(10), IsEmpty());
    EXPECT_EQ(tick(), kGet);
}

TEST_F(FeedQvapiTest, LinkingGoesOnWhileAnotherSourcePublishes) {
    publishOther();
    navigator.runs = true;
    EXPECT_THAT(tick(), ElementsAre(kFind, kMutex)) << "linked, and not asked";
    EXPECT_TRUE(feed->linked());
    EXPECT_EQ(publishOther(), kSet);
}

TEST_F(FeedQvapiTest, WithoutALinkNothingIsTold) {
    EXPECT_THAT(publishOther(), IsEmpty());
    EXPECT_FALSE(QFile::exists(navigator.home.sharedFile()));
}

TEST_F(FeedQvapiTest, TellingANavigatorThatWentUnlinks) {
    link();
    navigator.diesAtNextRequest = true;
    EXPECT_EQ(publishOther(), kSet);
    EXPECT_FALSE(feed->linked());
    EXPECT_THAT(publishOther(), IsEmpty());
    EXPECT_THAT(tick(10), IsEmpty());
    EXPECT_THAT(tick(), ElementsAre(kFind));
}

TEST_F(FeedQvapiTest, OtherAnswersToTellingAreIgnored) {
    link();
    for (const std::uint32_t status : {8U, 11U, 12U, 99U}) {
        navigator.answers[32] = status;
        publishOther();
        EXPECT_TRUE(feed->linked()) << status;
    }
}

TEST_F(FeedQvapiTest, NothingIsDoneWhileTheProgramIsBusy) {
    link();
    const BusyGuard busy;
    EXPECT_THAT(tick(20), IsEmpty());
    EXPECT_THAT(publishOther(), IsEmpty());
    EXPECT_TRUE(feed->linked());
}

TEST_F(FeedQvapiTest, ItsEndUnlinksAndClosesNothing) {
    link();
    navigator.takeCalls();
    feed.reset();
    EXPECT_FALSE(navigatorLink.window);
    EXPECT_THAT(navigator.takeCalls(), IsEmpty());
    // Nor does an unlinked one touch another's link.
    feed.emplace(shown, navigatorLink);
    ASSERT_EQ(ConnectNavigator(navigatorLink, false), kNavigatorSuccess);
    feed.reset();
    EXPECT_TRUE(navigatorLink.window);
}

} // namespace
} // namespace raincast
