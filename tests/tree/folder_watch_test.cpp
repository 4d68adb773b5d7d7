// SPDX-License-Identifier: MIT
#include "support/files.h"
#include "support/shared_disk.h"
#include "tree/folder_watch.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/magic.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>

namespace raincast {
namespace {

namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// No file can be opened while this lives.
class NoDescriptors {
public:
    NoDescriptors() {
        getrlimit(RLIMIT_NOFILE, &m_before);
        const rlimit none{0, m_before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &m_before); }
    NoDescriptors(const NoDescriptors&) = delete;
    NoDescriptors& operator=(const NoDescriptors&) = delete;

private:
    rlimit m_before{};
};

class FolderWatchTest : public ::testing::Test {
protected:
    FolderWatchTest() {
        fs::create_directories(at("feed/inner").toStdString());
        fs::create_directories(at("elsewhere").toStdString());
        m_watch.add(at("feed"));
        m_watch.add(at("feed/inner"));
    }
    void SetUp() override {
        if (test::isOnSharedDisk(m_temporary.path())) {
            GTEST_SKIP() << "the temporary folder's disk does not tell of all changes";
        }
    }
    [[nodiscard]] QString at(const QString& name) const { return m_temporary.filePath(name); }
    void move(const QString& from, const QString& to) const {
        fs::rename(at(from).toStdString(), at(to).toStdString());
    }

    QTemporaryDir m_temporary;
    FolderWatch m_watch;
};

TEST_F(FolderWatchTest, TellsAtFirstThatAFileIsBegunAndThenThatItIsWhole) {
    EXPECT_TRUE(m_watch.isSure());
    QFile file(at("feed/inner/a"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    auto changes = m_watch.take();
    EXPECT_THAT(changes.begun, ElementsAre(at("feed/inner/a")));
    file.write("bytes");
    changes = m_watch.take();
    EXPECT_THAT(changes.begun, ElementsAre(at("feed/inner/a")));
    EXPECT_THAT(changes.whole, IsEmpty());
    file.close();
    changes = m_watch.take();
    EXPECT_THAT(changes.whole, ElementsAre(at("feed/inner/a")));
    EXPECT_THAT(changes.begun, IsEmpty());
    EXPECT_FALSE(changes.isLost);
    EXPECT_THAT(m_watch.take().whole, IsEmpty());
}

TEST_F(FolderWatchTest, WhatIsMovedHereOrLinkedIsWhole) {
    writeFile(at("elsewhere/a"), "a");
    EXPECT_THAT(m_watch.take().whole, IsEmpty());
    fs::create_hard_link(at("elsewhere/a").toStdString(), at("feed/hard").toStdString());
    fs::create_symlink(at("elsewhere/a").toStdString(), at("feed/soft").toStdString());
    move("elsewhere/a", "feed/moved");
    const auto changes = m_watch.take();
    EXPECT_THAT(changes.whole, ElementsAre(at("feed/hard"), at("feed/soft"), at("feed/moved")));
    EXPECT_THAT(changes.begun, IsEmpty());
}

TEST_F(FolderWatchTest, ALinkToAFolderCountsForNothing) {
    fs::create_directory_symlink(at("elsewhere").toStdString(), at("feed/made").toStdString());
    fs::create_directory_symlink(at("elsewhere").toStdString(), at("link").toStdString());
    move("link", "feed/moved");
    const auto changes = m_watch.take();
    EXPECT_THAT(changes.whole + changes.begun + changes.folders, IsEmpty());
    EXPECT_FALSE(changes.isLost);
}

TEST_F(FolderWatchTest, LeavesHiddenNamesOutUntilTheyAreHiddenNoMore) {
    writeFile(at("feed/.a.X2z"), "a");
    fs::create_directory(at("feed/.folder").toStdString());
    auto changes = m_watch.take();
    EXPECT_THAT(changes.whole + changes.begun + changes.folders, IsEmpty());
    move("feed/.a.X2z", "feed/a");
    move("feed/.folder", "feed/folder");
    changes = m_watch.take();
    EXPECT_THAT(changes.whole, ElementsAre(at("feed/a")));
    EXPECT_THAT(changes.folders, ElementsAre(at("feed/folder")));
    EXPECT_FALSE(changes.isLost);
}

TEST_F(FolderWatchTest, FoldersThatComeAreToldAndThoseThatGoAreForgotten) {
    fs::create_directory(at("feed/new").toStdString());
    move("elsewhere", "feed/moved");
    auto changes = m_watch.take();
    EXPECT_THAT(changes.folders, ElementsAre(at("feed/new"), at("feed/moved")));
    fs::remove(at("feed/inner").toStdString());
    changes = m_watch.take();
    EXPECT_THAT(changes.whole + changes.folders, IsEmpty());
    EXPECT_FALSE(changes.isLost);
    EXPECT_TRUE(m_watch.isSure());
}

// Its watch goes with it and would tell wrong paths.
TEST_F(FolderWatchTest, AFolderThatMovesAwayMakesItLookAtEverything) {
    move("feed/inner", "feed/outer");
    EXPECT_TRUE(m_watch.take().isLost);
    m_watch.clear();
    m_watch.add(at("feed"));
    EXPECT_FALSE(m_watch.take().isLost);
    move("feed", "fed");
    EXPECT_TRUE(m_watch.take().isLost);
}

TEST_F(FolderWatchTest, MoreThanTheSystemRemembersMakesItLookAtEverything) {
    const int most = readFile("/proc/sys/fs/inotify/max_queued_events").trimmed().toInt();
    ASSERT_GT(most, 0);
    // In turn: a change that is the same as the last one is not remembered twice.
    QFile files[] = {QFile(at("feed/a")), QFile(at("feed/b"))};
    for (QFile& file : files) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    }
    for (int i = 0; i < most; ++i) {
        files[i % 2].write("x");
    }
    EXPECT_TRUE(m_watch.take().isLost);
}

TEST_F(FolderWatchTest, IsNotSureOfWhatItCannotWatch) {
    m_watch.add(at("absent"));
    EXPECT_FALSE(m_watch.isSure());
    m_watch.clear();
    m_watch.add(at("feed"));
    EXPECT_TRUE(m_watch.isSure());
    {
        const NoDescriptors none;
        m_watch.clear();
    }
    EXPECT_FALSE(m_watch.isSure());
    EXPECT_LT(m_watch.descriptor(), 0);
    m_watch.add(at("feed"));
    EXPECT_FALSE(m_watch.isSure());
    EXPECT_THAT(m_watch.take().whole, IsEmpty());
}

TEST_F(FolderWatchTest, OthersMayChangeWhatLiesOnTheNetwork) {
    for (const std::uint32_t system : {0x6969U, 0xFF534D42U, 0x65735546U}) { // NFS, CIFS, FUSE
        EXPECT_TRUE(FolderWatch::isShared(system));
    }
    for (const int system : {EXT4_SUPER_MAGIC, TMPFS_MAGIC, OVERLAYFS_SUPER_MAGIC}) {
        EXPECT_FALSE(FolderWatch::isShared(static_cast<std::uint32_t>(system)));
    }
}

} // namespace
} // namespace raincast
