// SPDX-License-Identifier: MIT
#include "tree/picture_makers.h"

#include <QThread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <optional>
#include <thread>

namespace raincast {
namespace {

using ::testing::Each;
using ::testing::SizeIs;

class PictureMakersTest : public ::testing::Test {
protected:
    PictureMakers::Waiter waiter(bool isWaiting = true) {
        return {
            [this](const PictureMakers::Picture& picture) {
                const std::lock_guard lock(m_mutex);
                m_told.push_back(picture.value().bytes());
            },
            [isWaiting] { return isWaiting; }};
    }

    /// Keeps all threads busy until release().
    void holdThreads() {
        for (int i = 0; i < QThread::idealThreadCount(); ++i) {
            m_makers->make(
                "held" + QByteArray::number(i),
                [this] {
                    m_released.wait();
                    return QByteArray("held");
                },
                {[](const PictureMakers::Picture&) {}, [] { return true; }}
            );
        }
    }
    void release() { m_release.set_value(); }
    /// Waits for all.
    void finish() { m_makers.reset(); }

    std::promise<void> m_release;
    std::shared_future<void> m_released = m_release.get_future().share();
    std::mutex m_mutex;
    std::vector<QByteArray> m_told;
    std::optional<PictureMakers> m_makers{std::in_place};
};

TEST_F(PictureMakersTest, MakesNoMoreAtOnceThanItMay) {
    std::atomic<int> now = 0;
    std::atomic<int> most = 0;
    {
        PictureMakers makers(1);
        for (int i = 0; i < 8; ++i) {
            makers.make(
                "picture" + QByteArray::number(i),
                [&] {
                    most = std::max<int>(most, ++now);
                    for (int turn = 0; turn < 2000; ++turn) {
                        std::this_thread::yield(); // to one that may not be there
                    }
                    --now;
                    return QByteArray("picture");
                },
                waiter()
            );
        }
    }
    EXPECT_EQ(most, 1);
    EXPECT_THAT(m_told, SizeIs(8));
}

TEST_F(PictureMakersTest, MakesAPictureInAnotherThread) {
    const auto here = std::this_thread::get_id();
    std::thread::id there = here;
    m_makers->make(
        "a",
        [&there] {
            there = std::this_thread::get_id();
            return QByteArray("picture");
        },
        waiter()
    );
    finish();
    EXPECT_EQ(m_told, std::vector<QByteArray>{"picture"});
    EXPECT_TRUE(there != here);
}

TEST_F(PictureMakersTest, MakesOnceWhatManyWaitFor) {
    int made = 0;
    holdThreads();
    for (int i = 0; i < 5; ++i) {
        m_makers->make(
            "a", [&made] { return QByteArray::number(++made); }, waiter(i == 3)
        );
    }
    release();
    finish();
    EXPECT_EQ(made, 1);
    EXPECT_THAT(m_told, ::testing::AllOf(SizeIs(5), Each(QByteArray("1"))));
}

TEST_F(PictureMakersTest, DoesNotMakeWhatNobodyWaitsForAnyMore) {
    int made = 0;
    const auto make = [&made] { return QByteArray::number(++made); };
    holdThreads();
    m_makers->make("a", make, waiter(false));
    m_makers->make("a", make, waiter(false));
    m_makers->make("b", make, waiter(true));
    release();
    finish();
    EXPECT_EQ(made, 1);
    EXPECT_THAT(m_told, SizeIs(1));
}

TEST_F(PictureMakersTest, MakesAgainWhatIsAskedForAgain) {
    int made = 0;
    for (int i = 1; i <= 2; ++i) {
        std::promise<void> told;
        m_makers->make(
            "a", [&made] { return QByteArray::number(++made); },
            {[&told](const PictureMakers::Picture&) { told.set_value(); }, [] { return true; }}
        );
        told.get_future().wait();
        EXPECT_EQ(made, i);
    }
}

} // namespace
} // namespace raincast
