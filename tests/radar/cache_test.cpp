// SPDX-License-Identifier: MIT
#include "core/storage_cards.h"
#include "radar/cache.h"
#include "support/files.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class CacheTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_folder.isValid());
        ASSERT_TRUE(QDir(m_folder.path()).mkdir("cards"));
        m_dataHome = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", QFile::encodeName(at("data")));
        qputenv(kCardRootVariable, QFile::encodeName(at("cards")));
    }
    void TearDown() override {
        qputenv("XDG_DATA_HOME", m_dataHome);
        qunsetenv(kCardRootVariable);
    }
    QString at(const QString& name) const { return m_folder.filePath(name); }
    QString internal() const { return at("data/Quorvane/Temp/Weather"); }

    QTemporaryDir m_folder;
    QByteArray m_dataHome;
};

TEST_F(CacheTest, IsInternalWithoutACard) {
    EXPECT_EQ(ChooseDefaultCache(), internal());
    EXPECT_TRUE(QFileInfo(internal()).isDir());
}

TEST_F(CacheTest, IsOnTheFirstCardThatWasUsedBefore) {
    for (const char* folder : {"cards/A", "cards/B/Quorvane", "cards/C/Quorvane/Temp/Weather"}) {
        ASSERT_TRUE(QDir().mkpath(at(folder)));
    }
    EXPECT_EQ(ChooseDefaultCache(), at("cards/B/Quorvane/Temp/Weather"));
    EXPECT_TRUE(QFileInfo(at("cards/B/Quorvane/Temp/Weather")).isDir());
    EXPECT_EQ(namesIn(at("cards/A")), "") << "nothing is made on a card that was not";
    EXPECT_TRUE(QFileInfo(internal()).isDir()) << "the internal root is made all the same";
}

TEST_F(CacheTest, AFileCalledLikeOurFolderIsNoSign) {
    writeFile(at("cards/A/Quorvane"));
    EXPECT_EQ(ChooseDefaultCache(), internal());
}

TEST_F(CacheTest, IsInternalWhereTheCardsFolderCannotBeMade) {
    writeFile(at("cards/A/Quorvane/Temp"), "in the way");
    ASSERT_TRUE(QDir().mkpath(at("cards/B/Quorvane")));
    EXPECT_EQ(ChooseDefaultCache(), internal()) << "the second card is not tried";
    EXPECT_EQ(namesIn(at("cards/B/Quorvane")), "");
}

TEST_F(CacheTest, IsNowhereWithoutApplicationData) {
    writeFile(at("data"), "in the way");
    EXPECT_EQ(internalCacheFolder(), "");
    // Nothing is deleted from the folder that the process happens to run in.
    writeFile(at("here/BMX_2.gif"));
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(at("here")));
    EXPECT_EQ(ChooseDefaultCache(), "");
    ASSERT_TRUE(QDir::setCurrent(before));
    EXPECT_EQ(namesIn(at("here")), "BMX_2.gif");
}

TEST_F(CacheTest, ClearsTheTopOfTheInternalRootEachTime) {
    ASSERT_TRUE(QDir().mkpath(at("cards/A/Quorvane/Temp/Weather")));
    writeFile(at("cards/A/Quorvane/Temp/Weather/BMX_2.gif"));
    for (const char* name :
         {"BMX_20070615_1830_N0R.gif", "bmx_Topo.jpg", "BMX/BMX_2.gif", "BM_2", "BMXX_2",
          "notes.txt"}) {
        writeFile(internal() + '/' + name);
    }
    EXPECT_EQ(ChooseDefaultCache(), at("cards/A/Quorvane/Temp/Weather"));
    EXPECT_EQ(namesIn(internal()), "BMX BMXX_2 BM_2 notes.txt");
    EXPECT_EQ(namesIn(internal() + "/BMX"), "BMX_2.gif");
    EXPECT_EQ(namesIn(at("cards/A/Quorvane/Temp/Weather")), "BMX_2.gif");
}

TEST_F(CacheTest, ClearsAnInternalRootThatIsALink) {
    writeFile(at("big disk/BMX_2.gif"));
    ASSERT_TRUE(QDir().mkpath(at("data/Quorvane/Temp")));
    ASSERT_TRUE(QFile::link(at("big disk"), internal()));
    EXPECT_EQ(ChooseDefaultCache(), internal());
    EXPECT_EQ(namesIn(at("big disk")), "");
}

TEST_F(CacheTest, NamesItsFolders) {
    EXPECT_EQ(cardCacheFolder("/media/SD"), "/media/SD/Quorvane/Temp/Weather");
    EXPECT_EQ(siteCacheFolder("/cache", u"BMX"), "/cache/BMX");
    EXPECT_EQ(siteCacheFolder("", u"BMX"), "") << "and not /BMX";
}

TEST_F(CacheTest, StaleFramesOfOneSiteAndProductGo) {
    const QString folder = at("cache/BMX");
    for (const char* name :
         {"BMX_20070615_1830_N0R.gif", "BMX_20070615_1840_N0R.gif", "BMX_20070615_1830_NCR.gif",
          "BMX_Warnings_0.gif", "BMX_Topo_Short.jpg", "BMX_19991231_2359_N0R.gif"}) {
        writeFile(folder + '/' + name);
    }
    writeFile(at("cache/MUX/MUX_20070615_1830_N0R.gif"));
    deleteStaleFrames(at("cache"), u"BMX", u"N0R", {"BMX_20070615_1840_N0R.gif", "whatever"});
    EXPECT_EQ(
        namesIn(folder), "BMX_19991231_2359_N0R.gif BMX_20070615_1830_NCR.gif "
                         "BMX_20070615_1840_N0R.gif BMX_Topo_Short.jpg BMX_Warnings_0.gif"
    );
    EXPECT_EQ(namesIn(at("cache/MUX")), "MUX_20070615_1830_N0R.gif");
    deleteStaleFrames(at("cache"), u"TLX", u"N0R", {});
    deleteStaleFrames("", u"MUX", u"N0R", {});
    EXPECT_EQ(namesIn(at("cache")), "BMX MUX");
    EXPECT_EQ(namesIn(at("cache/MUX")), "MUX_20070615_1830_N0R.gif");
}

TEST_F(CacheTest, WhatKilledProgramsLeftGoesAfterAnHour) {
    const QString folder = at("cache/BMX");
    for (const char* name :
         {"BMX_20190519_0454_N0R.gif.part", "BMX_City_Short.gfw.part", "BMX_Topo_Short.jpg",
          "BMX_20190519_0454_NCR.gif.4711-0.part"}) {
        writeFile(folder + '/' + name);
        backdate(folder + '/' + name, 3'700);
    }
    writeFile(folder + "/BMX_Rivers_Short.gif.part");
    backdate(folder + "/BMX_Rivers_Short.gif.part", 3'500);
    deleteStaleFrames(at("cache"), u"BMX", u"N0R", {});
    EXPECT_EQ(namesIn(folder), "BMX_Rivers_Short.gif.part BMX_Topo_Short.jpg");
}

TEST_F(CacheTest, WithoutARootNothingIsDeletedWhereTheProgramRuns) {
    writeFile(at("here/BMX_City_Short.gfw.part"));
    backdate(at("here/BMX_City_Short.gfw.part"), 3'700);
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(at("here")));
    deleteStaleFrames("", u"BMX", u"N0R", {});
    ASSERT_TRUE(QDir::setCurrent(before));
    EXPECT_EQ(namesIn(at("here")), "BMX_City_Short.gfw.part");
}

} // namespace
} // namespace raincast
