// SPDX-License-Identifier: MIT
#include "core/clock.h"
#include "support/files.h"
#include "support/full_disk.h"
#include "support/level3_maker.h"
#include "tree/level3_folder.h"

#include <QImage>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr auto kN0R = Product::baseReflectivity;

class Level3FolderTest : public ::testing::Test {
protected:
    Level3FolderTest() : m_clock(fromCalendar({2013, 5, 20, 20, 30})) {
        Clock::use(&m_clock);
        QDir().mkpath(m_feed);
    }
    ~Level3FolderTest() override { Clock::use(nullptr); }

    [[nodiscard]] std::unique_ptr<Level3Folder> open(int hours = 4) {
        return std::make_unique<Level3Folder>(m_feed, m_store, hours, [this](const QString& line) {
            m_log += line + '\n';
        });
    }
    /// A product of so many seconds after midnight, 20 May 2013.
    static QByteArray product(int second) {
        Level3ToMake wanted;
        wanted.second = second;
        return QByteArray::fromStdString(makeLevel3(wanted));
    }
    void put(const QString& name, const QByteArray& bytes) const {
        writeFile(m_feed + '/' + name, bytes);
    }
    /// As if nobody had touched a file for an hour.
    void age(const QString& name) const { backdate(m_feed + '/' + name, 3600); }
    [[nodiscard]] std::vector<FileTime> times(const Level3Folder& folder) const {
        return folder.frameTimes("TLX", kN0R, m_clock.now());
    }

    ManualClock m_clock;
    QTemporaryDir m_temporary;
    QString m_feed = m_temporary.filePath("feed");
    QString m_store = m_temporary.filePath("store");
    QString m_log;
    const int m_second = 20 * 3600 + 16 * 60 + 43;
    const FileTime m_time = fromCalendar({2013, 5, 20, 20, 16});
};

TEST_F(Level3FolderTest, RendersWhatIsNew) {
    const auto folder = open();
    EXPECT_FALSE(folder->isReady());
    EXPECT_EQ(folder->rescan(), 0);
    EXPECT_TRUE(folder->isReady());
    put("a", product(m_second));
    EXPECT_EQ(folder->rescan(), 1);
    EXPECT_THAT(times(*folder), ElementsAre(m_time));
    const auto gif = folder->frame("TLX", kN0R, m_time);
    EXPECT_EQ(QImage::fromData(gif.value(), "GIF").size(), QSize(600, 550));
    EXPECT_EQ(folder->rescan(), 0);
    EXPECT_EQ(folder->counts()->read, 1U);
    EXPECT_EQ(folder->counts()->failed, 0U);
    EXPECT_TRUE(open()->isReady()) << "there are frames of an earlier run";
}

TEST_F(Level3FolderTest, IsNotReadyInTheMidstOfItsFirstScan) {
    put("newest", product(m_second));
    put("damaged", "this is no product");
    put("oldest", product(m_second + 600));
    age("damaged");
    backdate(m_feed + "/oldest", 7200);
    std::stop_source stop;
    Level3Folder folder(m_feed, m_store, 4, [&](const QString&) { stop.request_stop(); });
    EXPECT_EQ(folder.rescan(stop.get_token()), 1);
    EXPECT_FALSE(folder.isReady());
    EXPECT_EQ(folder.rescan(), 1);
    EXPECT_TRUE(folder.isReady());
}

TEST_F(Level3FolderTest, SharpFramesAreMadeOfTheProductsThatAreThere) {
    put("a", product(m_second));
    const auto folder = open();
    folder->rescan();
    const auto size = [&](int detail) {
        const auto gif = folder->sharpFrame("TLX", kN0R, m_time, detail);
        return gif ? QImage::fromData(*gif, "GIF").size() : QSize();
    };
    EXPECT_EQ(size(2), QSize(1200, 1100));
    EXPECT_EQ(size(4), QSize(2400, 2200));
    EXPECT_FALSE(folder->sharpFrame("TLX", kN0R, m_time + kFileTimePerMinute, 2));
    EXPECT_FALSE(folder->sharpFrame("LWX", kN0R, m_time, 2));

    put("a", product(m_second + 600)); // another one takes its name
    EXPECT_EQ(size(2), QSize());
    folder->rescan();
    EXPECT_EQ(size(2), QSize());
    EXPECT_TRUE(folder->sharpFrame("TLX", kN0R, m_time + 10 * kFileTimePerMinute, 2));
    QFile::remove(m_feed + "/a");
    EXPECT_FALSE(folder->sharpFrame("TLX", kN0R, m_time + 10 * kFileTimePerMinute, 2));
    EXPECT_TRUE(folder->frame("TLX", kN0R, m_time)) << "it is stored";
}

TEST_F(Level3FolderTest, ASharpFrameOfAnEarlierRunIsThereAgain) {
    put("a", product(m_second));
    open()->rescan();
    const auto folder = open();
    folder->rescan();
    EXPECT_TRUE(folder->sharpFrame("TLX", kN0R, m_time, 4));
}

TEST_F(Level3FolderTest, LooksIntoFoldersAndLeavesHiddenFilesAlone) {
    put("TLX/N0R/a", product(m_second));
    put(".b.X7g2", product(m_second + 300));
    const auto folder = open();
    QStringList entered;
    EXPECT_EQ(folder->rescan({}, [&](const QString& path) { entered += path; }), 1);
    EXPECT_EQ(entered, (QStringList{m_feed, m_feed + "/TLX", m_feed + "/TLX/N0R"}));
}

TEST_F(Level3FolderTest, HalfWrittenFilesAreTriedAgain) {
    const QByteArray whole = product(m_second);
    const auto folder = open();
    put("a", whole.left(whole.size() / 2));
    EXPECT_EQ(folder->rescan(), 0);
    EXPECT_EQ(m_log, QString());
    put("a", whole);
    EXPECT_EQ(folder->rescan(), 1);
}

TEST_F(Level3FolderTest, DamagedFilesAreLoggedOnceAndTriedAgainWhenTheyChange) {
    put("a", "this is no product, nor will it be one by waiting");
    age("a");
    const auto folder = open();
    EXPECT_EQ(folder->rescan(), 0);
    EXPECT_EQ(folder->rescan(), 0);
    EXPECT_EQ(m_log.count('\n'), 1);
    EXPECT_THAT(m_log.toStdString(), HasSubstr("a: "));
    put("a", product(m_second));
    EXPECT_EQ(folder->rescan(), 1);
}

TEST_F(Level3FolderTest, ForgetsOldFramesAndTheirFiles) {
    put("a", product(m_second));
    put("b", product(m_second + 600));
    const auto folder = open(1);
    EXPECT_EQ(folder->rescan(), 2);
    m_clock.set(m_time + 65 * kFileTimePerMinute);
    EXPECT_EQ(folder->rescan(), 0);
    EXPECT_THAT(times(*folder), ElementsAre(m_time + 10 * kFileTimePerMinute));
    EXPECT_EQ(folder->frame("TLX", kN0R, m_time), std::nullopt);
    EXPECT_EQ(namesIn(m_store + "/N0R/TLX"), "TLX_20130520_2026_N0R.gif");
}

TEST_F(Level3FolderTest, OldProductsAreIgnoredUnlessAllAreKept) {
    put("a", product(m_second));
    put("b", product(m_second + 300));
    m_clock.advance(1000 * 60 * kFileTimePerMinute);
    EXPECT_EQ(open()->rescan(), 0);
    // Said once, not for each of thousands.
    EXPECT_EQ(m_log.count('\n'), 1);
    EXPECT_THAT(m_log.toStdString(), HasSubstr("older than 4 hours (see --hours)"));
    EXPECT_EQ(open(0)->rescan(), 2);
}

TEST_F(Level3FolderTest, ProductsOfUnknownSitesAreIgnored) {
    Level3ToMake foreign;
    foreign.awipsId = "N0RZZZ";
    put("a", QByteArray::fromStdString(makeLevel3(foreign)));
    EXPECT_EQ(open(0)->rescan(), 0);
    EXPECT_EQ(m_log, "a: unknown radar site; not shown, like all others of that kind.\n");
}

TEST_F(Level3FolderTest, ProductsOfTheFutureAreIgnored) {
    put("a", product(m_second));
    m_clock.set(m_time - 11 * kFileTimePerMinute);
    EXPECT_EQ(open()->rescan(), 0);
}

TEST_F(Level3FolderTest, KeepsFramesWhenTheirProductsAreGone) {
    put("a", product(m_second));
    auto folder = open();
    EXPECT_EQ(folder->rescan(), 1);
    QFile::remove(m_feed + "/a");
    EXPECT_EQ(folder->rescan(), 0);
    EXPECT_THAT(times(*folder), ElementsAre(m_time));
    // And so does another run.
    folder = open();
    EXPECT_THAT(times(*folder), ElementsAre(m_time));
    EXPECT_NE(folder->frame("TLX", kN0R, m_time), std::nullopt);
}

TEST_F(Level3FolderTest, OtherFilesInTheStoreAreNoFrames) {
    writeFile(m_store + "/N0R/TLX/notes.gif");
    writeFile(m_store + "/N0R/TLX/LWX_20130520_2016_N0R.gif");
    EXPECT_THAT(times(*open()), IsEmpty());
}

TEST_F(Level3FolderTest, AFullDiskKeepsNoCutFrameAndIsTriedAgain) {
    put("a", product(m_second));
    put("b", product(m_second + 300));
    age("a");
    age("b");
    const auto folder = open();
    {
        const FullDisk disk(1000);
        EXPECT_EQ(folder->rescan(), 0);
        EXPECT_EQ(folder->rescan(), 0);
    }
    EXPECT_THAT(times(*folder), IsEmpty());
    EXPECT_EQ(namesIn(m_store + "/N0R/TLX"), "");
    // Said once, not at every turn.
    EXPECT_EQ(m_log, QStringLiteral("Cannot write to %1: File too large.\n").arg(m_store));
    EXPECT_EQ(folder->rescan(), 2);
    EXPECT_EQ(times(*folder).size(), 2U);
    // The next full disk is said again.
    put("c", product(m_second + 600));
    const FullDisk disk(1000);
    EXPECT_EQ(folder->rescan(), 0);
    EXPECT_EQ(m_log.count('\n'), 2);
}

TEST_F(Level3FolderTest, AStoredFrameOfTheWrongLengthIsMadeAgain) {
    put("a", product(m_second));
    EXPECT_EQ(open()->rescan(), 1);
    const QString stored = m_store + "/N0R/TLX/TLX_20130520_2016_N0R.gif";
    const QByteArray whole = readFile(stored);
    for (const QByteArray& wrong : {QByteArray(), whole.first(whole.size() / 2), whole + "more"}) {
        writeFile(stored, wrong);
        const auto folder = open();
        EXPECT_EQ(folder->frame("TLX", kN0R, m_time), std::nullopt);
        EXPECT_EQ(folder->rescan(), 1);
        EXPECT_THAT(times(*folder), ElementsAre(m_time));
        EXPECT_EQ(folder->frame("TLX", kN0R, m_time), whole);
        EXPECT_EQ(readFile(stored), whole);
    }
}

TEST_F(Level3FolderTest, ADamagedFrameWithoutItsProductIsForgotten) {
    put("a", product(m_second));
    EXPECT_EQ(open()->rescan(), 1);
    QFile::remove(m_feed + "/a");
    writeFile(m_store + "/N0R/TLX/TLX_20130520_2016_N0R.gif", "cut");
    const auto folder = open();
    EXPECT_EQ(folder->rescan(), 0);
    EXPECT_THAT(times(*folder), IsEmpty());
    EXPECT_EQ(namesIn(m_store + "/N0R/TLX"), "");
}

TEST_F(Level3FolderTest, AStoreThatIsEmptiedWhileItIsUsedFillsAgain) {
    put("a", product(m_second));
    const auto folder = open();
    EXPECT_EQ(folder->rescan(), 1);
    ASSERT_TRUE(QDir(m_store).removeRecursively());
    EXPECT_EQ(folder->frame("TLX", kN0R, m_time), std::nullopt);
    EXPECT_EQ(folder->rescan(), 1);
    EXPECT_NE(folder->frame("TLX", kN0R, m_time), std::nullopt);
}

TEST_F(Level3FolderTest, WhatAKilledServerLeftIsRemoved) {
    const QString left = m_store + "/N0R/TLX/TLX_20130520_2016_N0R.gif.part";
    writeFile(left);
    backdate(left, 3700);
    EXPECT_EQ(open()->rescan(), 0);
    EXPECT_EQ(namesIn(m_store + "/N0R/TLX"), "");
}

TEST_F(Level3FolderTest, FoldersNamedFromTheWorkingFolderDoAsWell) {
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(m_temporary.path()));
    for (const char* start : {"", "./", "../"}) {
        const QString name = QString(start).startsWith("..")
                                 ? "../" + QFileInfo(m_temporary.path()).fileName() + '/'
                                 : QString(start);
        m_store = name + "store";
        m_feed = name + "feed";
        put("a", product(m_second));
        EXPECT_EQ(open()->rescan(), 1);
        put("b", "no product");
        age("b");
        QFile::remove(m_feed + "/a");
        // The next run has the frame, and deletes it when it is old.
        m_log.clear();
        const auto folder = open(1);
        EXPECT_EQ(folder->rescan(), 0);
        EXPECT_THAT(times(*folder), ElementsAre(m_time));
        EXPECT_NE(folder->frame("TLX", kN0R, m_time), std::nullopt);
        EXPECT_TRUE(m_log.startsWith("b: ")) << qPrintable(m_log);
        m_clock.advance(60 * kFileTimePerMinute);
        EXPECT_EQ(folder->rescan(), 0);
        EXPECT_EQ(namesIn(m_store + "/N0R/TLX"), "");
        m_clock.advance(-60 * kFileTimePerMinute);
    }
    ASSERT_TRUE(QDir::setCurrent(before));
}

TEST_F(Level3FolderTest, OversizedFilesAreNoProducts) {
    QFile file(m_feed + "/a");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(9 * 1024 * 1024));
    file.close();
    age("a");
    EXPECT_EQ(open()->rescan(), 0);
    EXPECT_THAT(m_log.toStdString(), HasSubstr("larger than any product"));
}

TEST_F(Level3FolderTest, StopsWhenAsked) {
    put("a", product(m_second));
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(open()->rescan(stop.get_token()), 0);
}

TEST_F(Level3FolderTest, HasNoWarnings) {
    const auto folder = open();
    EXPECT_TRUE(folder->warnings("TLX", Range::shortRange, m_time).warnings.empty());
}

TEST(RealDataLevel3FolderTest, RendersRecordedProducts) {
    const QString data = qEnvironmentVariable("RAINCAST_TEST_DATA") + "/level3/okx-sequence";
    if (!QFileInfo(data).isDir()) {
        GTEST_SKIP() << "There is no folder " << qPrintable(data);
    }
    const QTemporaryDir store;
    Level3Folder folder(data, store.path(), 0, [](const QString&) {});
    EXPECT_EQ(folder.rescan(), 12);
    const auto times = folder.frameTimes("OKX", kN0R, fromCalendar({2015, 10, 3, 1, 0}));
    EXPECT_EQ(times.size(), 12U);
    EXPECT_EQ(times.front(), fromCalendar({2015, 10, 3, 0, 4}));
}

} // namespace
} // namespace raincast
