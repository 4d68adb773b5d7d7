// SPDX-License-Identifier: MIT
#include "core/clock.h"
#include "server/level3_watch.h"
#include "support/files.h"
#include "support/level3_maker.h"
#include "support/shared_disk.h"
#include "tree/level3_folder.h"

#include <QDeadlineTimer>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace {
std::atomic<bool> hasNoWatches = false;
std::atomic<int> refused = 0;
} // namespace

// Stands before the system's.
extern "C" int inotify_add_watch(int inotify, const char* name, std::uint32_t mask) noexcept {
    if (hasNoWatches) {
        ++refused;
        errno = ENOSPC;
        return -1;
    }
    return static_cast<int>(syscall(SYS_inotify_add_watch, inotify, name, mask));
}

namespace raincast {
namespace {

using namespace std::chrono_literals;

constexpr auto kNever = 24h;

class Level3WatchTest : public ::testing::Test {
protected:
    Level3WatchTest() {
        Clock::use(&m_clock);
        QDir().mkpath(at("feed"));
    }
    ~Level3WatchTest() override {
        hasNoWatches = false;
        m_watch.reset();
        Clock::use(nullptr);
    }

    void SetUp() override {
        if (test::isOnSharedDisk(m_temporary.path())) {
            GTEST_SKIP() << "the temporary folder's disk does not tell of all changes";
        }
    }
    void watch(const Level3Watch::Pace& pace) {
        m_watch = std::make_unique<Level3Watch>(m_folder, pace);
        EXPECT_TRUE(comesTo([this] { return m_folder.isReady(); }));
    }
    /// A product of so many minutes after the first.
    [[nodiscard]] static QByteArray product(int minutes) {
        Level3ToMake wanted;
        wanted.second += minutes * 60;
        return QByteArray::fromStdString(makeLevel3(wanted));
    }
    /// Whether so many frames are there before long.
    [[nodiscard]] bool shows(std::size_t frames) const {
        return comesTo([&] {
            return m_folder.frameTimes("TLX", Product::baseReflectivity, m_clock.now()).size() ==
                   frames;
        });
    }
    template<typename Condition>
    static bool comesTo(const Condition& condition) {
        const QDeadlineTimer deadline(60s);
        while (!condition() && !deadline.hasExpired()) {
            std::this_thread::yield();
        }
        return condition();
    }
    [[nodiscard]] QString at(const QString& name) const { return m_temporary.filePath(name); }

    ManualClock m_clock{fromCalendar({2013, 5, 20, 20, 30})};
    QTemporaryDir m_temporary;
    Level3Folder m_folder{at("feed"), at("store"), 4, [](const QString&) {}};
    std::unique_ptr<Level3Watch> m_watch;
};

TEST_F(Level3WatchTest, TakesWhatTheSystemTellsWithoutLooking) {
    watch({.sure = kNever, .unsure = kNever, .unfinished = kNever});
    writeFile(at("feed/written"), product(0));
    EXPECT_TRUE(shows(1));
    writeFile(at("elsewhere"), product(1));
    QFile::rename(at("elsewhere"), at("feed/moved"));
    EXPECT_TRUE(shows(2));
    writeFile(at("feed/new/and/deep"), product(2));
    EXPECT_TRUE(shows(3));
    writeFile(at("feed/new/and/later"), product(3));
    EXPECT_TRUE(shows(4));
    writeFile(at("feed/written"), product(4));
    EXPECT_TRUE(shows(5)) << "another one of the same name";
}

TEST_F(Level3WatchTest, LooksByItselfWhereTheSystemHasNoWatches) {
    hasNoWatches = true;
    watch({.sure = kNever, .unsure = 1ms, .unfinished = kNever});
    writeFile(at("feed/a"), product(0));
    EXPECT_TRUE(shows(1));
    // There are some again.
    hasNoWatches = false;
    writeFile(at("feed/b/c"), product(1));
    EXPECT_TRUE(shows(2));
}

TEST_F(Level3WatchTest, LooksByItselfAsSoonAsTheWatchesAreUsedUp) {
    watch({.sure = kNever, .unsure = 1ms, .unfinished = kNever});
    writeFile(at("feed/a"), product(0));
    EXPECT_TRUE(shows(1));
    refused = 0;
    hasNoWatches = true;
    QDir().mkpath(at("feed/new"));
    EXPECT_TRUE(comesTo([] { return refused > 0; }));
    writeFile(at("feed/new/b"), product(1));
    EXPECT_TRUE(shows(2));
}

TEST_F(Level3WatchTest, LooksRarelyWhereTheSystemTellsAll) {
    QDir().mkpath(at("elsewhere"));
    writeFile(at("elsewhere/real"), "this is no product yet");
    QFile::link(at("elsewhere/real"), at("feed/link"));
    watch({.sure = 1ms, .unsure = kNever, .unfinished = kNever});
    // Nothing is told of what is behind a link.
    writeFile(at("elsewhere/real"), product(0));
    EXPECT_TRUE(shows(1));
}

TEST_F(Level3WatchTest, AFileThatNobodyClosesIsTakenWhenItIsWhole) {
    watch({.sure = kNever, .unsure = kNever, .unfinished = 1ms});
    QFile file(at("feed/a"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    const QByteArray bytes = product(0);
    file.write(bytes.first(bytes.size() / 2));
    file.write(bytes.sliced(bytes.size() / 2));
    EXPECT_TRUE(shows(1));
}

TEST_F(Level3WatchTest, FindsTheFolderThatTakesThePlaceOfTheFirst) {
    QDir().mkpath(at("first"));
    QDir().mkpath(at("second"));
    QDir().rmdir(at("feed"));
    QFile::link(at("first"), at("feed"));
    watch({.sure = kNever, .unsure = 1ms, .unfinished = 1ms});
    writeFile(at("second/a"), product(0));
    QFile::remove(at("feed"));
    QFile::link(at("second"), at("feed"));
    EXPECT_TRUE(shows(1));
    QFile::rename(at("second"), at("third"));
    QDir().mkpath(at("second"));
    writeFile(at("second/b"), product(1));
    EXPECT_TRUE(shows(2));
}

TEST_F(Level3WatchTest, DamagedFramesAreMadeAgain) {
    watch({.sure = kNever, .unsure = kNever, .unfinished = 1ms});
    writeFile(at("feed/a"), product(0));
    EXPECT_TRUE(shows(1));
    const FileTime time = fromCalendar({2013, 5, 20, 20, 16});
    QFile::remove(at("store/N0R/TLX/TLX_20130520_2016_N0R.gif"));
    EXPECT_FALSE(m_folder.frame("TLX", Product::baseReflectivity, time));
    EXPECT_TRUE(comesTo([&] {
        return m_folder.frame("TLX", Product::baseReflectivity, time).has_value();
    }));
}

} // namespace
} // namespace raincast
