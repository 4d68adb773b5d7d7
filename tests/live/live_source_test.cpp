// SPDX-License-Identifier: MIT
// A source of live frames against stand-ins of its providers.
#include "image/image_file.h"
#include "live_rig.h"
#include "nexrad/frame_painter.h"
#include "nexrad/level3_decoder.h"
#include "radar/bitmap.h"
#include "support/files.h"

#include <QCryptographicHash>

#include <gmock/gmock.h>

namespace raincast {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

constexpr FileTime kSecond = kFileTimePerSecond;
constexpr FileTime kMinute = kFileTimePerMinute;

class LiveSourceTest : public LiveRig {};

TEST_F(LiveSourceTest, AnIdleServerSendsNothing) {
    put("N0B", ago(3));
    advance(60 * kMinute);
    EXPECT_EQ(source().frameTimes("TLX", Product::baseReflectivity, clock.now()).size(), 0U);
    static_cast<void>(source().status());
    advance(60 * kMinute);
    EXPECT_EQ(sim.bucket.count() + sim.ring.count() + sim.alerts.count(), 0);
}

TEST_F(LiveSourceTest, ListsFramesWithoutFetchingThem) {
    put("N0B", ago(3));
    put("N0B", ago(8));
    put("N0B", ago(60 * 5)); // older than the frames are kept
    EXPECT_THAT(list(), ElementsAre(minuteOf(ago(8)), minuteOf(ago(3))));
    EXPECT_EQ(waited, 0);
    EXPECT_EQ(sim.bucket.count(), 1);
    EXPECT_THAT(
        sim.bucket.targets()[0].toStdString(),
        HasSubstr("?list-type=2&prefix=TLX_N0B_2026_11_21_&start-after=TLX_N0B_2026_11_21_13_52_3")
    );
    EXPECT_EQ(source().state("TLX", Product::baseReflectivity), SourceState::ok);
}

TEST_F(LiveSourceTest, FetchesAFrameOnceWhenItIsAskedFor) {
    put("N0B", ago(3));
    put("N0B", ago(8));
    list();
    const auto gif = frame(minuteOf(ago(8)));
    ASSERT_TRUE(gif);
    const auto scan = decodeLevel3(product("N0BTLX", ago(8)));
    EXPECT_EQ(*gif, renderFrame(*scan, Product::baseReflectivity));
    EXPECT_EQ(frame(minuteOf(ago(8))), gif);
    const auto sharp = source().sharpFrame("TLX", Product::baseReflectivity, minuteOf(ago(8)), 2);
    EXPECT_EQ(
        sharp,
        renderFrame(*scan, Product::baseReflectivity, frameGeometry(*scan, Range::shortRange, 2))
    );
    EXPECT_EQ(sim.bucket.count("/TLX_"), 1) << "both are made of one download";
    EXPECT_FALSE(source().stamp("TLX", Product::baseReflectivity, minuteOf(ago(8))).mayChange);
    EXPECT_TRUE(source().stamp("TLX", Product::baseReflectivity, minuteOf(ago(3))).mayChange);
}

TEST_F(LiveSourceTest, AStoredFrameMayChangeUntilTheProviderHasAnswered) {
    put("N0B", ago(3));
    put("N0B", ago(8));
    list();
    frame(minuteOf(ago(3)));
    frame(minuteOf(ago(8)));
    open();
    const auto mayChange = [this] {
        return source().stamp("TLX", Product::baseReflectivity, minuteOf(ago(8))).mayChange;
    };
    EXPECT_TRUE(mayChange());
    list();
    EXPECT_FALSE(mayChange());
}

TEST_F(LiveSourceTest, AFrameOfTheSecondProviderMayChange) {
    sim.bucket.breakBy(answers::silence());
    putRing(1, ago(8));
    putRing(2, ago(3));
    list();
    advance(5 * kMinute);
    ASSERT_THAT(list(), SizeIs(2));
    ASSERT_TRUE(frame(minuteOf(ago(8))));
    const auto stamp = [this] {
        return source().stamp("TLX", Product::baseReflectivity, minuteOf(ago(8)));
    };
    EXPECT_TRUE(stamp().mayChange) << "the first provider may have other bytes";
    const QByteArray version = stamp().version;
    sim.bucket.breakBy({});
    put("N0B", ago(8));
    put("N0B", ago(3));
    advance(15 * kMinute);
    list();
    ASSERT_TRUE(frame(minuteOf(ago(8))));
    EXPECT_NE(stamp().version, version);
    EXPECT_FALSE(stamp().mayChange);
}

TEST_F(LiveSourceTest, OneDownloadServesBothRanges) {
    put("N0B", ago(3));
    list();
    EXPECT_THAT(list("TLX", Product::longRangeReflectivity), SizeIs(1));
    EXPECT_TRUE(frame(minuteOf(ago(3))));
    const auto longRange = frame(minuteOf(ago(3)), "TLX", Product::longRangeReflectivity);
    ASSERT_TRUE(longRange);
    EXPECT_NE(*longRange, *frame(minuteOf(ago(3))));
    EXPECT_EQ(sim.bucket.count(), 2);
}

TEST_F(LiveSourceTest, ManyAskersAreOneRequest) {
    put("N0B", ago(3));
    int answered = 0;
    for (int i = 0; i < 20; ++i) {
        source().prepareTimes("TLX", Product::baseReflectivity, [&answered] { ++answered; });
    }
    settle();
    EXPECT_EQ(answered, 20);
    for (int i = 0; i < 20; ++i) {
        source().prepareFrame("TLX", Product::baseReflectivity, minuteOf(ago(3)), [&answered] {
            ++answered;
        });
    }
    settle();
    EXPECT_EQ(answered, 40);
    EXPECT_EQ(sim.bucket.count(), 2);
}

TEST_F(LiveSourceTest, TakesWhatASiteHas) {
    put("N0Q", ago(3), 94);
    put("DAA", ago(4), 170);
    EXPECT_THAT(list(), ElementsAre(minuteOf(ago(3))));
    EXPECT_THAT(list("TLX", Product::oneHourPrecipitation), ElementsAre(minuteOf(ago(4))));
    EXPECT_EQ(sim.bucket.count("N0B_"), 1);
    EXPECT_EQ(sim.bucket.count("N1P_"), 1);
    // It is remembered: from now on only what there is is asked for.
    for (int i = 0; i < 10; ++i) {
        list();
        list("TLX", Product::oneHourPrecipitation);
        put("N0Q", clock.now() - clock.now() % kMinute - 3 * kMinute, 94);
        put("DAA", clock.now() - clock.now() % kMinute - 3 * kMinute, 170);
        advance(3 * kMinute);
    }
    EXPECT_EQ(sim.bucket.count("N0B_"), 1);
    EXPECT_EQ(sim.bucket.count("N1P_"), 1);
}

TEST_F(LiveSourceTest, PollsWhenTheNextVolumeIsExpected) {
    put("N0B", ago(2));
    put("N0B", ago(7));
    list();
    EXPECT_EQ(sim.bucket.count(), 1);
    // It was put there 90 seconds after its time; the next one comes five minutes later.
    const FileTime expected = ago(2) + 90 * kSecond + 5 * kMinute + 15 * kSecond;
    advance(expected - clock.now() - kSecond);
    EXPECT_EQ(sim.bucket.count(), 1);
    put("N0B", ago(-3));
    advance(kSecond);
    EXPECT_EQ(sim.bucket.count(), 2);
    EXPECT_THAT(list(), SizeIs(3));
    EXPECT_EQ(sim.bucket.count(), 2);
    // From the newest on, which may have been replaced.
    EXPECT_THAT(
        sim.bucket.targets()[1].toStdString(), HasSubstr("start-after=TLX_N0B_2026_11_21_17_50_1")
    );
}

TEST_F(LiveSourceTest, WhatNobodyAsksForAnyMoreRests) {
    put("N0B", ago(2));
    list();
    advance(15 * kMinute);
    const int soFar = sim.bucket.count();
    EXPECT_LE(soFar, 20);
    const int ring = sim.ring.count();
    advance(600 * kMinute);
    EXPECT_EQ(sim.bucket.count(), soFar);
    EXPECT_EQ(sim.ring.count(), ring);
}

TEST_F(LiveSourceTest, YesterdayIsAskedForAroundMidnight) {
    clock.set(fromCalendar({2026, 11, 22, 0, 5, 0}));
    const FileTime before = fromCalendar({2026, 11, 21, 23, 58, 7});
    put("N0B", before);
    EXPECT_THAT(list(), ElementsAre(minuteOf(before)));
    EXPECT_EQ(sim.bucket.count("prefix=TLX_N0B_2026_11_21_"), 1);
    EXPECT_EQ(sim.bucket.count("prefix=TLX_N0B_2026_11_22_"), 1);
    const FileTime after = fromCalendar({2026, 11, 22, 0, 2, 40});
    put("N0B", after);
    advance(3 * kMinute);
    EXPECT_THAT(list(), ElementsAre(minuteOf(before), minuteOf(after)));
    // Later the day is enough.
    const int yesterday = sim.bucket.count("prefix=TLX_N0B_2026_11_21_");
    put("N0B", fromCalendar({2026, 11, 22, 0, 7, 40}));
    advance(14 * kMinute);
    list();
    put("N0B", fromCalendar({2026, 11, 22, 0, 22, 40}));
    advance(10 * kMinute);
    EXPECT_EQ(sim.bucket.count("prefix=TLX_N0B_2026_11_21_"), yesterday);
}

TEST_F(LiveSourceTest, PagesAreFollowed) {
    hours = 24;
    for (int i = 0; i < 1001; ++i) {
        sim.bucket.put(keyOf({"TLX", "N0B"}, ago(3 + i)), "x", ago(2 + i));
    }
    EXPECT_THAT(list(), SizeIs(1001));
    EXPECT_EQ(sim.bucket.count("continuation-token=%2F%2B%3D%26"), 1);
    EXPECT_EQ(sim.bucket.count(), 3); // yesterday, today, today's second page
}

TEST_F(LiveSourceTest, TagsMayBeRawOrEscaped) {
    for (const bool raw : {false, true}) {
        sim.bucket.useRawTags(raw);
        open();
        put("N0B", ago(3));
        put("N0B", ago(8));
        list();
        EXPECT_TRUE(frame(minuteOf(ago(3))));
        advance(kMinute);
        const int fetched = sim.bucket.count("/TLX_");
        EXPECT_TRUE(frame(minuteOf(ago(8))));
        list();
        EXPECT_TRUE(frame(minuteOf(ago(8))));
        EXPECT_LE(sim.bucket.count("/TLX_"), fetched + 1);
    }
}

TEST_F(LiveSourceTest, AReplacedObjectIsFetchedAgainUntilItsSuccessorIsThere) {
    put("N0B", ago(8));
    put("N0B", ago(3));
    list();
    const auto first = frame(minuteOf(ago(3)));
    const FrameStamp stamp = source().stamp("TLX", Product::baseReflectivity, minuteOf(ago(3)));
    // Unchanged: a condition is met, nothing is sent again.
    advance(kMinute);
    EXPECT_EQ(frame(minuteOf(ago(3))), first);
    EXPECT_EQ(source().stamp("TLX", Product::baseReflectivity, minuteOf(ago(3))), stamp);
    // Another asker of the same moment asks nobody.
    const int asked = sim.bucket.count();
    frame(minuteOf(ago(3)));
    EXPECT_EQ(sim.bucket.count(), asked);

    put("N0B", ago(3), 153, "TLX", 140);
    advance(kMinute);
    const auto second = frame(minuteOf(ago(3)));
    EXPECT_NE(second, first);
    EXPECT_NE(source().stamp("TLX", Product::baseReflectivity, minuteOf(ago(3))), stamp);

    // Replaced for the last time, and the successor comes: the list tells.
    put("N0B", ago(3), 153, "TLX", 160);
    put("N0B", ago(-2));
    advance(5 * kMinute);
    ASSERT_THAT(list(), SizeIs(3));
    const auto third = frame(minuteOf(ago(3)));
    EXPECT_NE(third, second);
    EXPECT_FALSE(source().stamp("TLX", Product::baseReflectivity, minuteOf(ago(3))).mayChange);
    const int fetched = sim.bucket.count("/TLX_N0B_2026_11_21_17_49");
    advance(kMinute);
    EXPECT_EQ(frame(minuteOf(ago(3))), third);
    EXPECT_EQ(sim.bucket.count("/TLX_N0B_2026_11_21_17_49"), fetched);
}

TEST_F(LiveSourceTest, AfterARestartTheStoreAnswersWithoutTheNetwork) {
    put("N0B", ago(3));
    put("N0B", ago(8));
    list();
    const auto gif = frame(minuteOf(ago(8)));
    sim.bucket.breakBy(answers::silence());
    sim.ring.breakBy(answers::silence());
    whole = std::chrono::milliseconds(200);
    open();
    EXPECT_THAT(
        source().frameTimes("TLX", Product::baseReflectivity, clock.now()),
        ElementsAre(minuteOf(ago(8)))
    );
    EXPECT_EQ(frame(minuteOf(ago(8))), gif);
    EXPECT_THAT(list(), ElementsAre(minuteOf(ago(8))));
    EXPECT_LE(waited, kSecond + kSecond / 2);
}

TEST_F(LiveSourceTest, WhatIsTooOldGoesFromTheStore) {
    put("N0B", ago(8));
    list();
    frame(minuteOf(ago(8)));
    EXPECT_THAT(
        namesIn(folder.filePath("live/TLX/N0B")), HasSubstr("TLX_N0B_2026_11_21_17_44_12,")
    );
    advance(10 * 60 * kMinute);
    list();
    EXPECT_EQ(namesIn(folder.filePath("live/TLX/N0B")), "");
    EXPECT_THAT(source().frameTimes("TLX", Product::baseReflectivity, clock.now()), IsEmpty());
}

TEST_F(LiveSourceTest, ADamagedStoredObjectIsFetchedAgain) {
    put("N0B", ago(8));
    put("N0B", ago(3));
    list();
    const auto gif = frame(minuteOf(ago(8)));
    const QDir kept(folder.filePath("live/TLX/N0B"));
    const QString file = kept.filePath(kept.entryList(QDir::Files).at(0));
    writeFile(file, readFile(file).left(100));
    open();
    frame(minuteOf(ago(8))); // finds it out
    list();
    EXPECT_EQ(frame(minuteOf(ago(8))), gif);
}

TEST_F(LiveSourceTest, WrongObjectsAreNeverShownOrAskedForAgainSoon) {
    const QByteArray good = product("N0BTLX", ago(3));
    sim.bucket.put(keyOf({"TLX", "N0B"}, ago(3)), good.left(200), ago(1));            // cut off
    sim.bucket.put(keyOf({"TLX", "N0B"}, ago(8)), product("N0BOKX", ago(8)), ago(6)); // other site
    sim.bucket.put(keyOf({"TLX", "N0B"}, ago(13)), good, ago(11));                    // other time
    sim.bucket.put(keyOf({"TLX", "N0B"}, ago(18)), "<html>Log in</html>", ago(16));
    useRing = false;
    list();
    for (const int minutes : {3, 8, 13, 18}) {
        EXPECT_EQ(frame(minuteOf(ago(minutes))), std::nullopt) << minutes;
    }
    const int asked = sim.bucket.count("/TLX_");
    EXPECT_LE(asked, 4);
    for (const int minutes : {3, 8, 13, 18}) {
        EXPECT_EQ(frame(minuteOf(ago(minutes))), std::nullopt) << minutes;
    }
    EXPECT_EQ(sim.bucket.count("/TLX_"), asked);
    EXPECT_EQ(namesIn(folder.filePath("live/TLX")), "");
}

TEST_F(LiveSourceTest, AProductWithoutAPictureIsAnEmptyFrame) {
    Level3ToMake dry;
    dry.code = 170;
    dry.awipsId = "DAATLX";
    const std::uint64_t seconds = toUnixSeconds(ago(3));
    dry.day = static_cast<int>(seconds / 86'400) + 1;
    dry.second = static_cast<int>(seconds % 86'400);
    dry.thresholds = accumulationThresholds(1, 0);
    dry.picture = Level3ToMake::Picture::none;
    dry.text = "NO PRECIPITATION";
    sim.bucket.put(
        keyOf({"TLX", "DAA"}, ago(3)), QByteArray::fromStdString(makeLevel3(dry)), ago(2)
    );
    ASSERT_THAT(list("TLX", Product::oneHourPrecipitation), ElementsAre(minuteOf(ago(3))));
    const auto gif = frame(minuteOf(ago(3)), "TLX", Product::oneHourPrecipitation);
    ASSERT_TRUE(gif);
    QImage empty(600, 550, QImage::Format_RGB32);
    empty.fill(kTransparentWhite);
    EXPECT_EQ(decodeImage(*gif, kMostImagePixels).convertToFormat(empty.format()), empty);
}

TEST_F(LiveSourceTest, AClosedSiteIsAnsweredByTheOneThatFollowedIt) {
    put("N0B", ago(3), 153, "HDC");
    EXPECT_THAT(list("LIX"), ElementsAre(minuteOf(ago(3))));
    EXPECT_TRUE(frame(minuteOf(ago(3)), "LIX"));
    EXPECT_NEAR(source().antenna("LIX")->latitude, 30.519, 1e-9);
    EXPECT_NEAR(source().antenna("TLX")->latitude, findAntenna("TLX")->latitude, 1e-9);
    EXPECT_EQ(source().antenna("HDC"), nullptr);
    EXPECT_THAT(list("HDC"), IsEmpty());
    clock.set(fromCalendar({2023, 11, 1}));
    EXPECT_NEAR(source().antenna("LIX")->latitude, findAntenna("LIX")->latitude, 1e-9);
}

// The other provider.

TEST_F(LiveSourceTest, TheRingAnswersWhenTheBucketFailsThreeTimes) {
    sim.bucket.breakBy(sim_errors::slowDown());
    for (int i = 0; i < 5; ++i) {
        putRing(240 + i, ago(23 - 5 * i), true);
    }
    putRing(3, ago(28), false);
    const auto times = list();
    EXPECT_LE(waited, 8 * kSecond);
    EXPECT_EQ(sim.bucket.count(), 3);
    EXPECT_FALSE(times.empty());
    EXPECT_EQ(times.empty() ? 0 : times.back(), minuteOf(ago(3)));
    settle();
    EXPECT_THAT(
        source().frameTimes("TLX", Product::baseReflectivity, clock.now()),
        ElementsAre(
            minuteOf(ago(28)), minuteOf(ago(23)), minuteOf(ago(18)), minuteOf(ago(13)),
            minuteOf(ago(8)), minuteOf(ago(3))
        )
    );
    for (const int minutes : {28, 3}) {
        EXPECT_TRUE(frame(minuteOf(ago(minutes)))) << minutes;
    }
    // sn.last, the page, and each other file once.
    EXPECT_EQ(sim.ring.count(), 7);
    EXPECT_EQ(source().state("TLX", Product::baseReflectivity), SourceState::ok);
    advance(2 * kSecond);
    EXPECT_EQ(log.count("does not answer"), 1);
}

TEST_F(LiveSourceTest, TheRingIsReadInAllItsForms) {
    using Form = SimRing::Form;
    for (const Form form : {Form::table, Form::isoTable, Form::lines}) {
        sim.bucket.breakBy(sim_errors::accessDenied());
        sim.ring.setForm(form);
        putRing(250, ago(13));
        putRing(0, ago(8)); // it is full and begins anew
        putRing(1, ago(3));
        QDir(folder.filePath("live")).removeRecursively();
        open();
        list();
        advance(40 * kSecond);
        EXPECT_THAT(
            source().frameTimes("TLX", Product::baseReflectivity, clock.now()),
            ElementsAre(minuteOf(ago(13)), minuteOf(ago(8)), minuteOf(ago(3)))
        );
    }
}

TEST_F(LiveSourceTest, TheRingIsAskedWhenTheNewestIsOld) {
    put("N0B", ago(40));
    put("N0B", ago(35));
    putRing(8, ago(25), false);
    putRing(9, ago(5));
    list();
    advance(2 * kSecond);
    EXPECT_THAT(
        list(),
        ElementsAre(minuteOf(ago(40)), minuteOf(ago(35)), minuteOf(ago(25)), minuteOf(ago(5)))
    );
    EXPECT_TRUE(frame(minuteOf(ago(5))));
    EXPECT_TRUE(frame(minuteOf(ago(35))));
}

TEST_F(LiveSourceTest, AFreshBucketLeavesTheRingAlone) {
    for (int i = 0; i < 12; ++i) {
        put("N0B", ago(3 - 5 * i));
        put("N0B", ago(8 - 5 * i));
        list();
        advance(5 * kMinute);
    }
    EXPECT_EQ(sim.ring.count(), 0);
    EXPECT_LE(sim.bucket.count(), 60);
}

TEST_F(LiveSourceTest, ResultsOfBothAreMergedByVolume) {
    put("N0B", ago(30));
    putRing(1, ago(30), false); // the same volume
    putRing(2, ago(10));
    list();
    advance(2 * kSecond);
    EXPECT_THAT(list(), ElementsAre(minuteOf(ago(30)), minuteOf(ago(10))));
    // The bucket's is the better one.
    const auto scan = decodeLevel3(product("N0BTLX", ago(30)));
    EXPECT_EQ(frame(minuteOf(ago(30))), renderFrame(*scan, Product::baseReflectivity));
}

TEST_F(LiveSourceTest, AnObjectThatIsGoneIsTakenFromTheRing) {
    put("N0B", ago(8));
    put("N0B", ago(3));
    putRing(1, ago(8), false);
    putRing(2, ago(3));
    list();
    sim.bucket.remove(keyOf({"TLX", "N0B"}, ago(8)));
    EXPECT_TRUE(frame(minuteOf(ago(8))));
}

TEST_F(LiveSourceTest, AStaleLastFileHidesNothing) {
    sim.bucket.breakBy(answers::nothing());
    putRing(1, ago(90)); // sn.last stays old
    putRing(2, ago(8), false);
    putRing(3, ago(3), false);
    list();
    advance(10 * kSecond);
    EXPECT_THAT(list(), ElementsAre(minuteOf(ago(90)), minuteOf(ago(8)), minuteOf(ago(3))));
}

TEST_F(LiveSourceTest, TheRingsConditionMayHaveNoEffect) {
    for (const bool honours : {true, false}) {
        sim.ring.honourConditions(honours);
        sim.bucket.breakBy(answers::nothing());
        putRing(1, ago(3));
        open();
        list();
        advance(6 * kMinute);
        EXPECT_THAT(list(), ElementsAre(minuteOf(ago(3))));
        EXPECT_LE(sim.ring.count("sn.last"), 4 * (honours ? 1 : 2));
    }
}

TEST_F(LiveSourceTest, WhatTheBucketHasListedIsNotFetchedFromTheRing) {
    for (int i = 0; i < 12; ++i) {
        put("N0B", ago(3 + 5 * i));
        putRing(20 - i, ago(3 + 5 * i), false);
    }
    ASSERT_THAT(list(), SizeIs(12));
    sim.bucket.breakBy(sim_errors::slowDown());
    putRing(21, ago(-2));
    advance(6 * kMinute);
    EXPECT_THAT(list(), SizeIs(13));
    // sn.last, the page and the file before it.
    EXPECT_LE(sim.ring.count(), 4);
    // But a frame that somebody wants is.
    EXPECT_TRUE(frame(minuteOf(ago(33))));
}

TEST_F(LiveSourceTest, ABucketThatRecoversIsUsedAgain) {
    sim.bucket.breakBy(sim_errors::slowDown());
    putRing(1, ago(3));
    put("N0B", ago(8));
    put("N0B", ago(3));
    list();
    sim.bucket.breakBy(std::nullopt);
    advance(3 * kMinute);
    EXPECT_THAT(list(), ElementsAre(minuteOf(ago(8)), minuteOf(ago(3))));
    EXPECT_THAT(log.toStdString(), HasSubstr("answers again"));
}

// Outages.

TEST_F(LiveSourceTest, EveryFaultEndsInAnAnswerInTime) {
    whole = std::chrono::milliseconds(300);
    const FaultServer::Answer faults[] = {
        sim_errors::accessDenied(),
        sim_errors::forbiddenPage(),
        sim_errors::slowDown(),
        sim_errors::slowDown(120),
        sim_errors::logInPage(),
        sim_errors::noSuchBucket(),
        answers::nothing(),
        answers::stall("<?xml"),
        answers::cut("<ListBucketResult/>", 5),
        answers::redirect(302, "http://127.0.0.2:1/"),
    };
    putRing(1, ago(3));
    put("N0B", ago(3));
    for (const auto& fault : faults) {
        SCOPED_TRACE(&fault - faults);
        clock.set(start);
        sim.bucket.breakBy(fault);
        QDir(folder.filePath("live")).removeRecursively();
        open();
        const int before = sim.bucket.count();
        list();
        EXPECT_LE(waited, 8 * kSecond);
        advance(2 * kMinute);
        EXPECT_THAT(list(), ElementsAre(minuteOf(ago(3))));
        EXPECT_TRUE(frame(minuteOf(ago(3))));
        EXPECT_LE(sim.bucket.count() - before, 6);
        EXPECT_EQ(source().state("TLX", Product::baseReflectivity), SourceState::ok);
    }
}

TEST_F(LiveSourceTest, WhateverIsWrongWithAnObjectTheRingHasIt) {
    whole = std::chrono::milliseconds(300);
    put("N0B", ago(8));
    put("N0B", ago(3));
    putRing(1, ago(8), false);
    putRing(2, ago(3));
    const QByteArray good = product("N0BTLX", ago(3));
    const QByteArray tag =
        "ETag: \"" + QCryptographicHash::hash(good, QCryptographicHash::Md5).toHex() + "\"\r\n";
    const FaultServer::Answer faults[] = {
        answers::respond(200, good.left(good.size() / 2), tag),
        answers::cut(good, 100),
        answers::stall(good.left(100)),
        sim_errors::logInPage(),
        sim_errors::accessDenied(),
        sim_errors::forbiddenPage(),
        answers::respond(404, "<Error><Code>NoSuchKey</Code></Error>"),
        sim_errors::slowDown(),
        sim_errors::slowDown(120),
    };
    for (const auto& fault : faults) {
        SCOPED_TRACE(&fault - faults);
        clock.set(start);
        sim.bucket.breakBy(fault, "/TLX_N0B_2026_11_21_17_49");
        QDir(folder.filePath("live")).removeRecursively();
        open();
        const int objects = sim.bucket.count("/TLX_");
        const int ring = sim.ring.count();
        ASSERT_THAT(list(), SizeIs(2));
        const auto gif = frame(minuteOf(ago(3)));
        EXPECT_LE(waited, 20 * kSecond);
        const auto scan = decodeLevel3(product("N0QTLX", ago(3), 94));
        EXPECT_EQ(gif, renderFrame(*scan, Product::baseReflectivity));
        // Three attempts at most; sn.last, the page and the other file.
        EXPECT_LE(sim.bucket.count("/TLX_") - objects, 3);
        EXPECT_LE(sim.ring.count() - ring, 3);
    }
}

TEST_F(LiveSourceTest, ASiteOfWhichThereIsNothingMakesNoProduct) {
    for (int i = 0; i < 10; ++i) {
        EXPECT_THAT(list(), IsEmpty());
        advance(kMinute);
    }
    EXPECT_EQ(source().state("TLX", Product::baseReflectivity), SourceState::noProduct);
    EXPECT_TRUE(source().status().reachable);
    // The three names that its product may have every two minutes, and sn.last every 150 seconds.
    EXPECT_LE(sim.bucket.count(), 3 * 6);
    EXPECT_LE(sim.ring.count(), 5);
}

TEST_F(LiveSourceTest, RetryAfterIsObeyed) {
    sim.bucket.breakBy(sim_errors::slowDown(300));
    list();
    const int before = sim.bucket.count();
    EXPECT_EQ(before, 1);
    advance(4 * kMinute);
    list();
    EXPECT_EQ(sim.bucket.count(), before);
    sim.bucket.breakBy(std::nullopt);
    put("N0B", ago(3));
    advance(2 * kMinute);
    EXPECT_THAT(list(), SizeIs(1));
}

TEST_F(LiveSourceTest, SaysWhyThereIsNothing) {
    const auto stateOf = [this](Product of = Product::baseReflectivity) {
        list("TLX", of);
        advance(5 * kSecond);
        return source().state("TLX", of);
    };
    // The radar makes others.
    put("N0B", ago(3));
    EXPECT_EQ(stateOf(Product::oneHourPrecipitation), SourceState::noProduct);
    EXPECT_THAT(log.toStdString(), HasSubstr("TLX N1P: this radar makes no such product."));
    // It has made none for an hour.
    open();
    sim.bucket.remove(keyOf({"TLX", "N0B"}, ago(3)));
    put("N0B", ago(60));
    EXPECT_EQ(stateOf(Product::oneHourPrecipitation), SourceState::radarDown);
    EXPECT_EQ(stateOf(), SourceState::radarDown);
    EXPECT_THAT(log.toStdString(), HasSubstr("the radar itself is down"));
    // Nobody answers as they should.
    sim.bucket.breakBy(sim_errors::slowDown());
    sim.ring.breakBy(sim_errors::forbiddenPage());
    open();
    EXPECT_EQ(stateOf(), SourceState::provider);
    EXPECT_TRUE(source().status().reachable);
}

class UnreachableLiveSourceTest : public LiveRig {
protected:
    LiveSource::Settings settings() override {
        LiveSource::Settings result = LiveRig::settings();
        result.bucket = result.ring = result.warnings = result.otherWarnings =
            "http://" + m_port.host().toUtf8();
        return result;
    }

private:
    RefusingPort m_port;
};

TEST_F(UnreachableLiveSourceTest, SaysThatThereIsNoNetwork) {
    EXPECT_TRUE(source().status().reachable);
    EXPECT_THAT(list(), IsEmpty());
    EXPECT_LE(waited, 8 * kSecond);
    EXPECT_EQ(source().state("TLX", Product::baseReflectivity), SourceState::network);
    advance(5 * kSecond);
    EXPECT_EQ(log.count("This machine has no network."), 1);
    EXPECT_FALSE(source().status().reachable);
}

TEST_F(LiveSourceTest, TellsWhoAsksAndNoOrigin) {
    put("N0B", ago(3));
    list();
    frame(minuteOf(ago(3)));
    for (const QByteArray& head : sim.bucket.heads()) {
        EXPECT_EQ(headerIn(head, "User-Agent"), "Raincast/test");
        EXPECT_EQ(headerIn(head, "Origin"), "");
        EXPECT_EQ(headerIn(head, "Cookie"), "");
    }
}

TEST_F(LiveSourceTest, StatusHasProvidersAndWhatIsWanted) {
    put("N0B", ago(3));
    list();
    const LiveStatus status = source().status();
    ASSERT_EQ(status.wanted.size(), 1U);
    EXPECT_EQ(status.wanted[0].site, "TLX");
    EXPECT_EQ(status.wanted[0].newest, ago(3));
    EXPECT_THAT(status.wanted[0].provider.toStdString(), HasSubstr("Unidata"));
    EXPECT_TRUE(status.reachable);
    ASSERT_GE(status.hosts.size(), 3U);
    EXPECT_EQ(status.hosts[0].health.requests, 1U);
}

TEST_F(LiveSourceTest, WarningsAreAskedForOnceAMinuteWhileSomebodyLooks) {
    const QByteArray json = R"({"features":[{"geometry":{"type":"Polygon","coordinates":
        [[[-97,35],[-96,35],[-96,36],[-97,35]]]},"properties":{"id":"a","event":"Tornado Warning",
        "status":"Actual","messageType":"Alert","ends":"2026-11-21T12:00:00-06:00"}}]})";
    sim.alerts.setAlerts(json);
    const auto look = [this] {
        waitFor([this](FrameSource::Ready ready) { source().prepareWarnings(std::move(ready)); });
        return source().warnings("TLX", Range::shortRange, clock.now()).warnings;
    };
    EXPECT_THAT(look(), SizeIs(1));
    look();
    EXPECT_EQ(sim.alerts.count(), 1);
    advance(3 * kMinute);
    EXPECT_EQ(sim.alerts.count(), 4);
    const QByteArray last = sim.alerts.heads().back();
    EXPECT_NE(headerIn(last, "If-None-Match"), "");
    EXPECT_EQ(headerIn(last, "Accept"), "application/geo+json");
    EXPECT_THAT(look(), SizeIs(1));
    // It ends at 18:00 UTC, whoever answers.
    sim.alerts.breakBy(sim_errors::problem());
    advance(5 * kMinute);
    EXPECT_THAT(look(), IsEmpty());
    advance(60 * kMinute);
    const int soFar = sim.alerts.count();
    advance(60 * kMinute);
    EXPECT_EQ(sim.alerts.count(), soFar);
}

TEST_F(LiveSourceTest, TheOtherProviderTellsWarningsWhenTheFirstFails) {
    sim.alerts.setStormWarnings(R"({"features":[{"id":"BIS.TO.W.0002","properties":{"status":"NEW",
        "phenomena":"TO","significance":"W","ps":"Tornado Warning","wfo":"BIS","eventid":2,
        "polygon_begin":"2026-11-21T17:40:00Z","polygon_end":"2026-11-21T18:15:00Z"},
        "geometry":{"type":"MultiPolygon","coordinates":
        [[[[-102.9,46.7],[-102.6,46.7],[-102.6,46.9],[-102.9,46.7]]]]}}]})");
    sim.alerts.breakBy(sim_errors::forbiddenPage(), "/alerts/active");
    waitFor([this](FrameSource::Ready ready) { source().prepareWarnings(std::move(ready)); });
    const auto warnings = source().warnings("TLX", Range::shortRange, clock.now()).warnings;
    ASSERT_THAT(warnings, SizeIs(1));
    EXPECT_EQ(warnings[0].kind, WarningKind::tornado);
    EXPECT_EQ(warnings[0].office, "NWS BIS");
}

class TwoAlertersLiveSourceTest : public LiveRig {
protected:
    LiveSource::Settings settings() override {
        LiveSource::Settings result = LiveRig::settings();
        result.otherWarnings = other.url();
        return result;
    }

    SimAlerts other;
};

TEST_F(TwoAlertersLiveSourceTest, WhateverIsWrongWithTheFirstTheOtherTellsWarnings) {
    whole = std::chrono::milliseconds(300);
    other.setStormWarnings(R"({"features":[{"properties":{"status":"NEW","phenomena":"TO",
        "significance":"W","wfo":"BIS","eventid":2,"polygon_end":"2026-11-21T18:15:00Z"},"geometry":
        {"type":"Polygon","coordinates":[[[-97,35],[-96,35],[-96,36],[-97,35]]]}}]})");
    const FaultServer::Answer faults[] = {
        sim_errors::problem(),
        sim_errors::forbiddenPage(),
        sim_errors::logInPage(),
        sim_errors::slowDown(120),
        answers::respond(404, "{}"),
        answers::respond(200, R"({"features":7})"),
        answers::nothing(),
        answers::cut(R"({"features":[]})", 5),
        answers::stall(R"({"features":)"),
    };
    int asked = 0;
    for (const auto& fault : faults) {
        SCOPED_TRACE(&fault - faults);
        clock.set(start);
        sim.alerts.breakBy(fault);
        open();
        const int before = sim.alerts.count();
        waitFor([this](FrameSource::Ready ready) { source().prepareWarnings(std::move(ready)); });
        advance(30 * kSecond);
        EXPECT_THAT(source().warnings("TLX", Range::shortRange, clock.now()).warnings, SizeIs(1));
        EXPECT_LE(sim.alerts.count() - before, 3);
        EXPECT_EQ(std::exchange(asked, other.count()), other.count() - 1);
    }
}

TEST_F(LiveSourceTest, AProviderThatDoesNotUnderstandIsAskedForAll) {
    sim.alerts.breakBy(answers::respond(400, R"({"parameterErrors":[]})"), "event=");
    waitFor([this](FrameSource::Ready ready) { source().prepareWarnings(std::move(ready)); });
    EXPECT_EQ(sim.alerts.targets().back(), "/alerts/active");
    EXPECT_EQ(sim.alerts.count("sbw"), 0);
}

TEST_F(LiveSourceTest, NobodyWaitsForAClosedSource) {
    sim.bucket.breakBy(answers::silence());
    bool isReady = false;
    source().prepareTimes("TLX", Product::baseReflectivity, [&isReady] { isReady = true; });
    static_cast<void>(source().turn());
    EXPECT_FALSE(isReady);
    source().close();
    EXPECT_TRUE(isReady);
    isReady = false;
    source().prepareTimes("TLX", Product::velocity, [&isReady] { isReady = true; });
    EXPECT_TRUE(isReady);
}

/// Real objects of the bucket, under their keys and at their times.
class RealDataLiveSourceTest : public LiveRig {};

TEST_F(RealDataLiveSourceTest, ObjectsComeOutRightToThePixel) {
    const QDir data(qEnvironmentVariable("RAINCAST_TEST_DATA") + QStringLiteral("/level3"));
    int shown = 0;
    for (const QString& name : data.entryList(QDir::Files)) {
        const auto object = readKey(name.toStdString());
        if (!object) {
            continue;
        }
        const QByteArray bytes = readFile(data.filePath(name));
        const auto scan = decodeLevel3(bytes);
        ASSERT_TRUE(scan) << qPrintable(name);
        clock.set(object->time + 4 * kMinute);
        sim.bucket.put(name.toStdString(), bytes, object->time + kMinute);
        open();
        const char* const site = object->name.site.c_str();
        for (const Product of : publishedAs(*scan)) {
            SCOPED_TRACE(name.toStdString());
            ASSERT_THAT(list(site, of), ElementsAre(object->minute()));
            EXPECT_EQ(frame(object->minute(), site, of), renderFrame(*scan, of));
            ++shown;
        }
        sim.bucket.remove(name.toStdString());
    }
    if (shown == 0) {
        GTEST_SKIP() << "RAINCAST_TEST_DATA names no folder with level3";
    }
    EXPECT_GE(shown, 8);
}

} // namespace
} // namespace raincast
