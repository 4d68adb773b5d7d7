// SPDX-License-Identifier: MIT
#include "core/clock.h"
#include "fake_frames.h"
#include "tree/image_tree.h"
#include "tree/layer_store.h"

#include <QImage>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace raincast {
namespace {

using ::testing::ElementsAre;

class ImageTreeTest : public ::testing::Test {
protected:
    ImageTreeTest() : m_clock(fromCalendar({2018, 7, 25, 20, 0, 30})) {
        Clock::use(&m_clock);
        for (const int minute : {0, 5, 55}) {
            m_frames.times.insert(fromCalendar({2018, 7, 25, minute == 55 ? 19 : 20, minute}));
        }
    }
    ~ImageTreeTest() override { Clock::use(nullptr); }

    [[nodiscard]] QByteArray body(const char* path) const {
        const auto answer = m_tree.find(path);
        return answer ? answer->body.bytes() : QByteArray("(none)");
    }

    ManualClock m_clock;
    FakeFrames m_frames;
    MapData m_maps{MapDataFiles()};
    LayerStore m_layers{m_maps, QString()};
    ImageTree m_tree{m_frames, m_layers};
};

TEST_F(ImageTreeTest, ListsFramesUpToNow) {
    const auto listing = m_tree.find("/ridge/RadarImg/N0R/LWX/");
    ASSERT_TRUE(listing);
    EXPECT_EQ(listing->keeping, Keeping::aMoment);
    const QByteArray& page = listing->body.bytes();
    EXPECT_TRUE(page.contains("\"LWX_20180725_1955_N0R.gif\""));
    EXPECT_TRUE(page.contains("\"LWX_20180725_2000_N0R.gif\""));
    EXPECT_FALSE(page.contains("2005"));
    EXPECT_THAT(
        m_tree.framesIn({"LWX", Product::baseReflectivity}),
        ElementsAre("LWX_20180725_1955_N0R.gif", "LWX_20180725_2000_N0R.gif")
    );
}

TEST_F(ImageTreeTest, FramesOfTheFutureAreNotThereYet) {
    const char* const path = "/ridge/RadarImg/N0R/LWX/LWX_20180725_2005_N0R.gif";
    EXPECT_FALSE(m_tree.find(path));
    m_clock.advance(5 * kFileTimePerMinute);
    EXPECT_EQ(body(path), gifThatSays("LWXN0R"));
}

TEST_F(ImageTreeTest, MakesAPictureOnce) {
    const char* const path = "/ridge/RadarImg/N0V/LWX/LWX_20180725_2000_N0V.gif";
    const auto answer = m_tree.find(path);
    ASSERT_TRUE(answer);
    EXPECT_STREQ(answer->type, "image/gif");
    EXPECT_EQ(answer->keeping, Keeping::aMoment);
    EXPECT_EQ(body(path), gifThatSays("LWXN0V"));
    EXPECT_EQ(m_frames.made, 1);
    EXPECT_GT(m_tree.bytesInMemory(), 0);
}

TEST_F(ImageTreeTest, SharpPicturesStandBesideTheOthers) {
    const char* const sharp = "/ridge/x2/RadarImg/N0V/LWX/LWX_20180725_2000_N0V.gif";
    EXPECT_EQ(body(sharp), gifThatSays("LWXN0V2"));
    EXPECT_EQ(body("/ridge/RadarImg/N0V/LWX/LWX_20180725_2000_N0V.gif"), gifThatSays("LWXN0V"));
    EXPECT_EQ(body("/ridge/x4/RadarImg/N0V/LWX/LWX_20180725_2000_N0V.gif"), gifThatSays("LWXN0V4"));
    EXPECT_EQ(m_tree.find(sharp)->keeping, Keeping::aMoment) << "as its like";
    m_clock.advance(5 * kFileTimePerMinute);
    EXPECT_EQ(m_tree.find(sharp)->keeping, Keeping::forGood);
    EXPECT_EQ(m_frames.made, 3);
    const QByteArray warnings = body("/ridge/x2/Warnings/Short/LWX_Warnings_0.gif");
    EXPECT_EQ(QImage::fromData(warnings, "GIF").size(), QSize(1200, 1100));

    m_frames.hasSharp = false;
    EXPECT_FALSE(m_tree.find("/ridge/x2/RadarImg/N0V/LWX/LWX_20180725_1955_N0V.gif"));
    EXPECT_TRUE(m_tree.find("/ridge/RadarImg/N0V/LWX/LWX_20180725_1955_N0V.gif"));
}

TEST_F(ImageTreeTest, AFrameIsFinalOnceALaterOneIsListed) {
    const char* const path = "/ridge/RadarImg/N0V/LWX/LWX_20180725_2000_N0V.gif";
    EXPECT_EQ(m_tree.find(path)->keeping, Keeping::aMoment);
    EXPECT_TRUE(m_tree.isNewest(path));
    m_clock.advance(5 * kFileTimePerMinute);
    EXPECT_EQ(m_tree.find(path)->keeping, Keeping::forGood);
    EXPECT_FALSE(m_tree.isNewest(path));
    m_frames.changing = {fromCalendar({2018, 7, 25, 20, 0})};
    EXPECT_EQ(m_tree.find(path)->keeping, Keeping::aMoment) << "its source says so";
    EXPECT_EQ(m_frames.made, 1);
    EXPECT_EQ(
        m_tree.find("/ridge/Overlays/Cities/Short/LWX_City_Short.gfw")->keeping, Keeping::aDay
    );
}

TEST_F(ImageTreeTest, KeepsAListingAndItsTag) {
    const char* const path = "/ridge/RadarImg/N0R/LWX/";
    const auto first = m_tree.find(path);
    const auto again = m_tree.find(path);
    EXPECT_EQ(&first->body.bytes(), &again->body.bytes()) << "the same object";
    m_clock.advance(5 * kFileTimePerMinute);
    const auto later = m_tree.find(path);
    EXPECT_TRUE(later->body.bytes().contains("2005"));
    EXPECT_NE(later->body.tag(), first->body.tag());
    EXPECT_EQ(m_tree.counts().hits, 1U);
    EXPECT_EQ(m_tree.counts().misses, 2U);
    EXPECT_FALSE(body("/ridge/RadarImg/").isEmpty());
    EXPECT_EQ(body("/ridge/RadarImg/"), body("/ridge/RadarImg/"));
}

TEST_F(ImageTreeTest, CountsWhatItMakes) {
    EXPECT_NE(body("/ridge/RadarImg/N0V/LWX/LWX_20180725_2000_N0V.gif"), "(none)");
    EXPECT_NE(body("/ridge/Warnings/Short/LWX_Warnings_0.json"), "(none)");
    EXPECT_NE(body("/ridge/Overlays/Topo/Short/LWX_Topo_Short.jpg"), "(none)");
    EXPECT_NE(body("/ridge/Overlays/Topo/Short/LWX_Topo_Short.jpg"), "(none)");
    const ImageTree::Counts counts = m_tree.counts();
    EXPECT_EQ(counts.frames.pictures, 1U);
    EXPECT_EQ(counts.warnings.pictures, 1U);
    EXPECT_EQ(counts.layers.pictures, 1U);
    EXPECT_GT(counts.layers.seconds, 0);
    EXPECT_EQ(counts.hits, 1U);
}

TEST_F(ImageTreeTest, TellsLaterWhatHasToBeMade) {
    const char* const path = "/ridge/RadarImg/N0V/LWX/LWX_20180725_2000_N0V.gif";
    const auto isTold = [this](const char* asked) {
        const auto there = std::make_shared<std::promise<std::thread::id>>();
        const auto tell = [there](const std::optional<TreeAnswer>& answer) {
            EXPECT_TRUE(answer);
            there->set_value(std::this_thread::get_id());
        };
        m_tree.ask(asked, {tell, [] { return true; }});
        return there->get_future().get() != std::this_thread::get_id();
    };
    EXPECT_TRUE(isTold(path));
    EXPECT_FALSE(isTold(path));
    EXPECT_FALSE(isTold("/ridge/RadarImg/N0V/LWX/"));
}

TEST_F(ImageTreeTest, DoesNotMakeWhatNobodyWaitsFor) {
    m_tree.ask(
        "/ridge/RadarImg/N0V/LWX/LWX_20180725_2000_N0V.gif",
        {[](const std::optional<TreeAnswer>&) {}, [] { return false; }}
    );
    EXPECT_EQ(body("/ridge/RadarImg/N0S/LWX/LWX_20180725_2000_N0S.gif"), gifThatSays("LWXN0S"));
    EXPECT_EQ(m_frames.made, 1);
}

TEST_F(ImageTreeTest, AFrameThatIsNotThereIsNotFound) {
    EXPECT_FALSE(m_tree.find("/ridge/RadarImg/N0R/LWX/LWX_20180725_1956_N0R.gif"));
}

TEST_F(ImageTreeTest, WarningsAreThoseOfTheMinute) {
    const char* const path = "/ridge/Warnings/Short/LWX_Warnings_0.gif";
    const QByteArray first = body(path);
    EXPECT_EQ(body(path), first);
    EXPECT_EQ(m_frames.made, 1);
    EXPECT_EQ(m_tree.find(path)->keeping, Keeping::aMoment);
    m_clock.advance(kFileTimePerMinute);
    EXPECT_NE(body(path), first);
}

TEST_F(ImageTreeTest, WorldFilesPlaceTheAntennaInTheMiddle) {
    const QByteArray text = body("/ridge/Overlays/Cities/Short/LWX_City_Short.gfw");
    const auto lines = text.split('\n');
    ASSERT_GE(lines.size(), 6);
    const double step = lines[0].toDouble();
    EXPECT_NEAR(step, 0.009253, 1e-5);
    EXPECT_NEAR(lines[4].toDouble() + 299.5 * step, -77.47, 0.02);
    EXPECT_NEAR(lines[5].toDouble() - 274.5 * step, 38.97, 0.02);
    EXPECT_LT(text.size(), 256);
}

TEST_F(ImageTreeTest, LayersAreThereWithoutAnyData) {
    const QByteArray topo = body("/ridge/Overlays/Topo/Short/LWX_Topo_Short.jpg");
    EXPECT_EQ(QImage::fromData(topo, "JPG").size(), QSize(600, 550));
    const QByteArray rivers = body("/ridge/Overlays/Rivers/Long/LWX_Rivers_Long.gif");
    EXPECT_EQ(QImage::fromData(rivers, "GIF").size(), QSize(600, 550));
}

TEST_F(ImageTreeTest, LayersAreSharpToo) {
    for (const int detail : {2, 4}) {
        const QSize size = QSize(600, 550) * detail;
        const auto at = [&](const char* path, const char* format) {
            const std::string sharp = sharpPath(path, detail).value();
            EXPECT_EQ(m_tree.find(sharp)->keeping, Keeping::aDay) << sharp;
            EXPECT_EQ(QImage::fromData(body(sharp.c_str()), format).size(), size) << sharp;
        };
        at("/ridge/Overlays/Topo/Long/LWX_Topo_Long.jpg", "JPG");
        at("/ridge/Overlays/Highways/Short/LWX_Highways_Short.gif", "GIF");
        at("/weather_radar/basemaps/LWX_County_Short.gif", "GIF");
    }
    EXPECT_EQ(m_tree.counts().layers.pictures, 6U) << "each once";
    EXPECT_EQ(body("/ridge/x2/Overlays/Topo/Long/LWX_Topo_Long.gfw"), "(none)");
}

TEST_F(ImageTreeTest, SharpPicturesDisplaceNoOthersFromMemory) {
    const char* const listing = "/ridge/RadarImg/N0R/LWX/";
    const char* const frame = "/ridge/RadarImg/N0V/LWX/LWX_20180725_2000_N0V.gif";
    EXPECT_NE(body(listing), "(none)");
    EXPECT_NE(body(frame), "(none)");
    m_frames.picture = QByteArray(1'000'000, 'x');
    for (const Product product : kAllProducts) {
        for (const int detail : {2, 4}) {
            const FrameFolder folder{"TLX", product};
            const std::string path = pathOf(folder) + frameName(folder, *m_frames.times.begin());
            EXPECT_TRUE(m_tree.find(sharpPath(path, detail).value()));
        }
    }
    EXPECT_LE(m_tree.bytesInMemory(), ImageTree::kMostBytesInMemory);
    EXPECT_GT(m_tree.bytesInMemory(), 2'000'000) << "the latest of them are kept";
    const auto hits = m_tree.counts().hits;
    EXPECT_NE(body(listing), "(none)");
    EXPECT_NE(body(frame), "(none)");
    EXPECT_EQ(m_tree.counts().hits, hits + 2);
}

TEST_F(ImageTreeTest, ListsOtherFolders) {
    EXPECT_TRUE(body("/ridge/").contains("\"RadarImg/\""));
    EXPECT_EQ(body("/ridge/Nothing/"), "(none)");
    EXPECT_EQ(body("/ridge/RadarImg/N0R/ZZZ/"), "(none)");
    EXPECT_EQ(body("/ridge/x2/"), "(none)");
    EXPECT_EQ(body("/ridge/x2/RadarImg/N0R/LWX/"), "(none)");
    EXPECT_EQ(body("/weather_radar/x2/basemaps/"), "(none)");
}

TEST_F(ImageTreeTest, AddedPagesAreMadeEachTime) {
    int times = 0;
    m_tree.addPage("/status", "application/json", [&times] { return QByteArray::number(++times); });
    EXPECT_EQ(body("/status"), "1");
    EXPECT_EQ(body("/status"), "2");
}

} // namespace
} // namespace raincast
