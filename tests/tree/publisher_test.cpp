// SPDX-License-Identifier: MIT
#include "core/clock.h"
#include "fake_frames.h"
#include "support/files.h"
#include "support/full_disk.h"
#include "tree/layer_store.h"
#include "tree/publisher.h"

#include <QDir>
#include <QDirIterator>
#include <QImage>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class PublisherTest : public ::testing::Test {
protected:
    PublisherTest() : m_clock(fromCalendar({2018, 7, 25, 20, 0})) {
        Clock::use(&m_clock);
        m_frames.times = {m_clock.now() - 5 * kFileTimePerMinute, m_clock.now()};
        m_tree.addPage("/", "text/html", [] { return QByteArray("home"); });
        m_tree.addPage("/status", "application/json", [] { return QByteArray("{}"); });
    }
    ~PublisherTest() override { Clock::use(nullptr); }

    bool publish(const QByteArray& stamp = "data") {
        Publisher publisher(m_tree, m_root, {{"LWX"}, stamp}, [this](const QString& line) {
            m_log += line + '\n';
        });
        return publisher.publish();
    }
    [[nodiscard]] QString file(const char* path) const { return m_root + path; }

    ManualClock m_clock;
    QTemporaryDir m_folder;
    QString m_root = m_folder.filePath("www");
    QString m_log;
    FakeFrames m_frames;
    MapData m_maps{MapDataFiles()};
    LayerStore m_layers{m_maps, QString()};
    ImageTree m_tree{m_frames, m_layers};
};

TEST_F(PublisherTest, WritesTheTree) {
    ASSERT_TRUE(publish());
    EXPECT_EQ(
        namesIn(file("/ridge/RadarImg/N0R/LWX")),
        ".LWX_20180725_2000_N0R.gif LWX_20180725_1955_N0R.gif LWX_20180725_2000_N0R.gif index.html"
    );
    EXPECT_EQ(
        readFile(file("/ridge/RadarImg/NTP/LWX/LWX_20180725_2000_NTP.gif")), gifThatSays("LWXNTP")
    );
    EXPECT_THAT(
        readFile(file("/ridge/RadarImg/N0R/LWX/index.html")).toStdString(),
        HasSubstr("\"LWX_20180725_1955_N0R.gif\"")
    );
    EXPECT_EQ(
        namesIn(file("/ridge/Overlays/Cities/Short")), "LWX_City_Short.gfw LWX_City_Short.gif"
    );
    EXPECT_EQ(namesIn(file("/ridge/Overlays/Topo/Long")), "LWX_Topo_Long.gfw LWX_Topo_Long.jpg");
    EXPECT_EQ(
        namesIn(file("/weather_radar/basemaps")),
        "LWX_City_Long.gif LWX_City_Short.gif LWX_County_Long.gif LWX_County_Short.gif"
    );
    EXPECT_EQ(namesIn(file("/ridge/Warnings/Short")), "LWX_Warnings_0.gif LWX_Warnings_0.json");
    EXPECT_EQ(readFile(file("/index.html")), "home");
    EXPECT_EQ(readFile(file("/status")), "{}");
    EXPECT_EQ(m_log, QString());
}

TEST_F(PublisherTest, TheNewestFramesComeFirst) {
    const FileTime newest = m_clock.now();
    m_frames.times.insert(newest - 10 * kFileTimePerMinute);
    ASSERT_TRUE(publish());
    ASSERT_EQ(m_frames.order.size(), 3U * 7U);
    for (std::size_t i = 0; i < m_frames.order.size(); ++i) {
        EXPECT_EQ(m_frames.order[i] == newest, i < 7) << i;
    }
}

TEST_F(PublisherTest, AFrameThatIsNotThereIsNotListed) {
    m_frames.lost.insert(m_clock.now());
    ASSERT_TRUE(publish());
    const std::string listing = readFile(file("/ridge/RadarImg/N0R/LWX/index.html")).toStdString();
    EXPECT_THAT(listing, HasSubstr("\"LWX_20180725_1955_N0R.gif\""));
    EXPECT_THAT(listing, Not(HasSubstr("LWX_20180725_2000_N0R.gif")));
}

TEST_F(PublisherTest, ASecondTurnWritesWhatIsNewAndDeletesWhatIsGone) {
    m_frames.times.insert(m_clock.now() - 10 * kFileTimePerMinute);
    ASSERT_TRUE(publish());
    m_frames.text = "other";
    m_frames.times.erase(m_frames.times.begin());
    m_clock.advance(5 * kFileTimePerMinute);
    m_frames.times.insert(m_clock.now());
    ImageTree fresh(m_frames, m_layers);
    ASSERT_TRUE(Publisher(fresh, m_root, {{"LWX"}, "data"}, [](const QString&) {}).publish());
    EXPECT_EQ(
        namesIn(file("/ridge/RadarImg/N0R/LWX")),
        ".LWX_20180725_2005_N0R.gif LWX_20180725_1955_N0R.gif LWX_20180725_2000_N0R.gif "
        "LWX_20180725_2005_N0R.gif index.html"
    );
    // A frame that is final stays as it is; warnings are those of now.
    EXPECT_EQ(
        readFile(file("/ridge/RadarImg/N0R/LWX/LWX_20180725_1955_N0R.gif")), gifThatSays("LWXN0R")
    );
    EXPECT_EQ(
        readFile(file("/ridge/RadarImg/N0R/LWX/LWX_20180725_2000_N0R.gif")),
        gifThatSays("otherLWXN0R")
    ) << "an earlier run could not know that it was final";
    EXPECT_THAT(
        readFile(file("/ridge/Warnings/Short/LWX_Warnings_0.json")).toStdString(),
        HasSubstr("other")
    );
}

TEST_F(PublisherTest, AFrameIsMarkedWhileItMayChangeAndUntilALaterOneIsListed) {
    const QString folder = file("/ridge/RadarImg/N0R/LWX");
    const auto marks = [&] {
        return QDir(folder)
            .entryList({QStringLiteral(".*.gif")}, QDir::Files | QDir::Hidden)
            .join(u' ')
            .toStdString();
    };
    m_frames.changing = {m_clock.now() - 5 * kFileTimePerMinute};
    Publisher publisher(m_tree, m_root, {{"LWX"}, "data"}, [](const QString&) {});
    ASSERT_TRUE(publisher.publish());
    EXPECT_EQ(marks(), ".LWX_20180725_1955_N0R.gif .LWX_20180725_2000_N0R.gif");
    m_clock.advance(5 * kFileTimePerMinute);
    m_frames.times.insert(m_clock.now());
    ASSERT_TRUE(publisher.publish());
    EXPECT_EQ(marks(), ".LWX_20180725_1955_N0R.gif .LWX_20180725_2005_N0R.gif");
    m_frames.changing.clear();
    ASSERT_TRUE(publisher.publish());
    EXPECT_EQ(marks(), ".LWX_20180725_2005_N0R.gif");
    EXPECT_EQ(publisher.counts().deleted, 0U);
    // One that could change to its end.
    m_frames.changing = {*m_frames.times.begin()};
    ASSERT_TRUE(publisher.publish());
    EXPECT_EQ(marks(), ".LWX_20180725_1955_N0R.gif .LWX_20180725_2005_N0R.gif");
    m_frames.times.erase(m_frames.times.begin());
    ASSERT_TRUE(publisher.publish());
    EXPECT_EQ(marks(), ".LWX_20180725_2005_N0R.gif");
    const Publisher::Counts counts = publisher.counts();
    EXPECT_GT(counts.written, 30U);
    EXPECT_EQ(counts.failed, 0U);
    EXPECT_EQ(counts.deleted, 7U);
    EXPECT_GT(counts.lastGood, 0);
}

TEST_F(PublisherTest, LayersAreWrittenAgainWhenTheirDataChange) {
    ASSERT_TRUE(publish());
    const QString topo = file("/ridge/Overlays/Topo/Short/LWX_Topo_Short.jpg");
    const QByteArray old = gifThatSays("old");
    writeFile(topo, old);
    ASSERT_TRUE(publish());
    EXPECT_EQ(readFile(topo), old);
    ASSERT_TRUE(publish("new data"));
    EXPECT_NE(readFile(topo), old);
}

TEST_F(PublisherTest, AFullDiskLeavesNoCutFile) {
    m_frames.text = QByteArray(5000, 'x');
    {
        const FullDisk disk(4096);
        EXPECT_FALSE(publish());
    }
    EXPECT_THAT(
        m_log.toStdString(), ::testing::MatchesRegex("Cannot write .*\\.gif: File too large\\.\n")
    );
    EXPECT_EQ(namesIn(file("/ridge/RadarImg/N0R/LWX")), ".LWX_20180725_2000_N0R.gif");
    ASSERT_TRUE(publish());
    EXPECT_EQ(
        readFile(file("/ridge/RadarImg/N0R/LWX/LWX_20180725_2000_N0R.gif")),
        gifThatSays(m_frames.text + "LWXN0R")
    );
}

TEST_F(PublisherTest, AFileOfTheWrongLengthIsMadeAgain) {
    ASSERT_TRUE(publish());
    for (const char* path :
         {"/ridge/RadarImg/N0R/LWX/LWX_20180725_2000_N0R.gif",
          "/ridge/RadarImg/N0R/LWX/LWX_20180725_1955_N0R.gif",
          "/ridge/Overlays/Topo/Short/LWX_Topo_Short.jpg",
          "/ridge/Overlays/Cities/Short/LWX_City_Short.gif",
          "/ridge/Overlays/Cities/Short/LWX_City_Short.gfw",
          "/weather_radar/basemaps/LWX_City_Long.gif", "/ridge/Warnings/Short/LWX_Warnings_0.gif",
          "/ridge/RadarImg/N0R/LWX/index.html", "/index.html", "/status"}) {
        const QByteArray whole = readFile(file(path));
        for (const QByteArray& wrong : {QByteArray(), whole.chopped(1), whole + "more"}) {
            writeFile(file(path), wrong);
            ASSERT_TRUE(publish());
            EXPECT_EQ(readFile(file(path)), whole) << path << " of " << wrong.size() << " bytes";
        }
    }
}

TEST_F(PublisherTest, WhatAKilledPublisherLeftIsRemoved) {
    ASSERT_TRUE(publish());
    const QString old = file("/ridge/RadarImg/N0R/LWX/LWX_20180725_1500_N0R.gif.part");
    const QString fresh = file("/ridge/RadarImg/N0R/LWX/LWX_20180725_1505_N0R.gif.part");
    writeFile(old);
    writeFile(fresh);
    backdate(old, 61 * 60);
    backdate(fresh, 59 * 60);
    ASSERT_TRUE(publish());
    EXPECT_FALSE(QFile::exists(old));
    EXPECT_TRUE(QFile::exists(fresh)); // another publisher may be writing it
}

TEST_F(PublisherTest, AFolderThatCannotBeWrittenToIsLogged) {
    writeFile(m_root, "a file");
    EXPECT_FALSE(publish());
    EXPECT_THAT(m_log.toStdString(), HasSubstr("Cannot write"));
    EXPECT_THAT(m_log.toStdString(), HasSubstr(": Not a directory.\n"));
}

TEST_F(PublisherTest, SeveralSitesAreWrittenAtOnce) {
    constexpr int kFrames = 20; // more than those of an hour
    for (int i = 0; i < kFrames; ++i) {
        m_frames.times.insert(m_clock.now() - i * 5 * kFileTimePerMinute);
    }
    const QStringList sites{"LWX", "TLX", "MUX", "OKX"};
    ASSERT_TRUE(Publisher(m_tree, m_root, {sites, "data"}, [](const QString&) {}).publish());
    for (const QString& site : sites) {
        const QDir folder(m_root + "/ridge/RadarImg/N0S/" + site);
        EXPECT_EQ(folder.entryList({"*.gif"}).size(), kFrames);
    }
    EXPECT_FALSE(QDir(m_root + "/ridge/RadarImg/N0S/DIX").exists());
}

class SharpPublisherTest : public PublisherTest {
protected:
    bool publishSharp(int detail = 2, const QByteArray& stamp = "data") {
        return publisherOf(detail, stamp)->publish();
    }
    std::unique_ptr<Publisher> publisherOf(int detail, const QByteArray& stamp = "data") {
        return std::make_unique<Publisher>(
            m_tree, m_root, Publisher::What{{"LWX"}, stamp, detail},
            [this](const QString& line) { m_log += line + '\n'; }
        );
    }
    static std::string filesBelow(const QString& folder) {
        QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        QStringList names;
        while (files.hasNext()) {
            names += QDir(folder).relativeFilePath(files.next());
        }
        names.sort();
        return names.join('\n').toStdString();
    }
};

TEST_F(SharpPublisherTest, WritesTheSharpPicturesAndNothingElse) {
    ASSERT_TRUE(publish());
    const std::string described = filesBelow(m_root);
    ASSERT_TRUE(publishSharp());
    EXPECT_EQ(
        namesIn(file("/ridge/x2/RadarImg/N0R/LWX")),
        ".LWX_20180725_2000_N0R.gif LWX_20180725_1955_N0R.gif LWX_20180725_2000_N0R.gif"
    );
    EXPECT_EQ(
        readFile(file("/ridge/x2/RadarImg/NTP/LWX/LWX_20180725_2000_NTP.gif")),
        gifThatSays("LWXNTP2")
    );
    EXPECT_EQ(namesIn(file("/ridge/x2/Overlays/Cities/Short")), "LWX_City_Short.gif");
    EXPECT_EQ(namesIn(file("/ridge/x2/Overlays/Topo/Long")), "LWX_Topo_Long.jpg");
    EXPECT_EQ(
        namesIn(file("/weather_radar/x2/basemaps")),
        "LWX_City_Long.gif LWX_City_Short.gif LWX_County_Long.gif LWX_County_Short.gif"
    );
    EXPECT_EQ(namesIn(file("/ridge/x2/Warnings/Short")), "LWX_Warnings_0.gif");
    const QImage rivers(file("/ridge/x2/Overlays/Rivers/Short/LWX_Rivers_Short.gif"));
    EXPECT_EQ(rivers.size(), QSize(1200, 1100));
    EXPECT_FALSE(QFile::exists(file("/ridge/x4")));
    EXPECT_EQ(m_log, QString());

    QDir(file("/ridge/x2")).removeRecursively();
    QDir(file("/weather_radar/x2")).removeRecursively();
    QFile::remove(file("/.layers-x2"));
    EXPECT_EQ(filesBelow(m_root), described) << "nothing else was written";
}

TEST_F(SharpPublisherTest, SharpFramesAreMarkedAndGoAsTheOthers) {
    const auto names = [this] { return namesIn(file("/ridge/x4/RadarImg/N0R/LWX")); };
    m_frames.changing = {m_clock.now() - 5 * kFileTimePerMinute};
    const auto publisher = publisherOf(4);
    ASSERT_TRUE(publisher->publish());
    EXPECT_EQ(
        names(), ".LWX_20180725_1955_N0R.gif .LWX_20180725_2000_N0R.gif LWX_20180725_1955_N0R.gif "
                 "LWX_20180725_2000_N0R.gif"
    );
    m_clock.advance(5 * kFileTimePerMinute);
    m_frames.times.insert(m_clock.now());
    m_frames.changing.clear();
    m_frames.times.erase(m_frames.times.begin());
    ASSERT_TRUE(publisher->publish());
    EXPECT_EQ(
        names(), ".LWX_20180725_2005_N0R.gif LWX_20180725_2000_N0R.gif LWX_20180725_2005_N0R.gif"
    );
    EXPECT_EQ(publisher->counts().deleted, 7U);
}

TEST_F(SharpPublisherTest, AFrameWithoutASharpOneIsLeftOut) {
    m_frames.hasSharp = false;
    ASSERT_TRUE(publish());
    ASSERT_TRUE(publishSharp());
    EXPECT_EQ(namesIn(file("/ridge/x2/RadarImg/N0R/LWX")), "");
    EXPECT_EQ(namesIn(file("/ridge/x2/Overlays/Topo/Long")), "LWX_Topo_Long.jpg");
    EXPECT_THAT(
        readFile(file("/ridge/RadarImg/N0R/LWX/index.html")).toStdString(),
        HasSubstr("LWX_20180725_2000_N0R.gif")
    );
}

TEST_F(SharpPublisherTest, AFileOfTheWrongLengthIsMadeAgain) {
    ASSERT_TRUE(publishSharp());
    for (const char* path :
         {"/ridge/x2/RadarImg/N0R/LWX/LWX_20180725_1955_N0R.gif",
          "/ridge/x2/Overlays/Topo/Short/LWX_Topo_Short.jpg",
          "/weather_radar/x2/basemaps/LWX_City_Long.gif",
          "/ridge/x2/Warnings/Short/LWX_Warnings_0.gif"}) {
        const QByteArray whole = readFile(file(path));
        for (const QByteArray& wrong : {QByteArray(), whole.chopped(1), whole + "more"}) {
            writeFile(file(path), wrong);
            ASSERT_TRUE(publishSharp());
            EXPECT_EQ(readFile(file(path)), whole) << path << " of " << wrong.size() << " bytes";
        }
    }
}

// After a power cut: the product that a frame is made of may not be there yet.
TEST_F(SharpPublisherTest, ACutFrameThatCannotBeMadeAgainIsNotTakenForAWholeOne) {
    const QString cut = file("/ridge/x2/RadarImg/N0R/LWX/LWX_20180725_1955_N0R.gif");
    const QString good = file("/ridge/x2/RadarImg/N0R/LWX/LWX_20180725_2000_N0R.gif");
    writeFile(cut, gifThatSays("half").chopped(1));
    writeFile(good, gifThatSays("whole"));
    m_frames.hasSharp = false;
    ASSERT_TRUE(publishSharp());
    EXPECT_FALSE(QFileInfo::exists(cut));
    EXPECT_EQ(readFile(good), gifThatSays("whole"));
    m_frames.hasSharp = true;
    ASSERT_TRUE(publishSharp());
    EXPECT_TRUE(QFileInfo::exists(cut));
}

TEST_F(SharpPublisherTest, LayersAreWrittenAgainWhenTheirDataChange) {
    ASSERT_TRUE(publishSharp());
    const QString topo = file("/ridge/x2/Overlays/Topo/Short/LWX_Topo_Short.jpg");
    const QByteArray old = gifThatSays("old");
    writeFile(topo, old);
    ASSERT_TRUE(publish("new data")) << "the described ones are another's";
    ASSERT_TRUE(publishSharp());
    EXPECT_EQ(readFile(topo), old);
    ASSERT_TRUE(publishSharp(2, "new data"));
    EXPECT_NE(readFile(topo), old);
}

TEST_F(SharpPublisherTest, WarningsAreMadeAgainOnlyWhenTheyHaveChanged) {
    const QString picture = file("/ridge/x2/Warnings/Short/LWX_Warnings_0.gif");
    const auto publisher = publisherOf(2);
    ASSERT_TRUE(publisher->publish());
    const QByteArray first = readFile(picture);
    const auto made = m_tree.counts().warnings.pictures;
    ASSERT_TRUE(publisher->publish());
    EXPECT_EQ(m_tree.counts().warnings.pictures, made);
    m_clock.advance(kFileTimePerMinute); // the warning moves
    ASSERT_TRUE(publisher->publish());
    EXPECT_NE(readFile(picture), first);
    EXPECT_EQ(m_tree.counts().warnings.pictures, made + 6) << "two texts, four pictures";
}

TEST_F(SharpPublisherTest, AFullDiskLeavesNoCutFile) {
    m_frames.text = QByteArray(5000, 'x');
    {
        const FullDisk disk(4096);
        EXPECT_FALSE(publishSharp());
    }
    EXPECT_THAT(m_log.toStdString(), HasSubstr("Cannot write"));
    EXPECT_EQ(namesIn(file("/ridge/x2/RadarImg/N0R/LWX")), ".LWX_20180725_2000_N0R.gif");
    EXPECT_TRUE(publishSharp());
}

TEST_F(SharpPublisherTest, WhatIsNotPublishedAnyMoreIsRemoved) {
    ASSERT_TRUE(publish());
    const std::string described = filesBelow(m_root);
    ASSERT_TRUE(publishSharp(2));
    ASSERT_TRUE(publishSharp(4));
    const QString other = file("/ridge/x2/RadarImg/N0R/TLX/TLX_20180725_2000_N0R.gif");
    writeFile(other);
    publisherOf(2)->remove();
    EXPECT_EQ(filesBelow(file("/ridge/x2")), "RadarImg/N0R/TLX/TLX_20180725_2000_N0R.gif");
    EXPECT_EQ(filesBelow(file("/weather_radar/x2")), "");
    EXPECT_TRUE(QFile::exists(file("/ridge/x4/Warnings/Short/LWX_Warnings_0.gif")));
    publisherOf(4)->remove();
    QFile::remove(other);
    EXPECT_EQ(filesBelow(m_root), described);
}

TEST_F(PublisherTest, StopsWhenAsked) {
    std::stop_source stop;
    stop.request_stop();
    Publisher publisher(m_tree, m_root, {{"LWX"}, "data"}, [](const QString&) {});
    EXPECT_FALSE(publisher.publish(stop.get_token()));
    EXPECT_EQ(m_frames.made, 0);
}

} // namespace
} // namespace raincast
