// SPDX-License-Identifier: MIT
#include "server/readiness.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

const FileTime kNow = fromCalendar({2026, 11, 21, 18, 0});
constexpr FileTime kMinute = kFileTimePerMinute;

/// A server of live weather that has run for hours.
class ReadinessTest : public ::testing::Test {
protected:
    ReadinessTest() {
        m_status.source = SourceKind::live;
        m_status.started = kNow - 300 * kMinute;
        m_status.live.emplace();
    }
    void want(const char* site, int minutes, SourceState state) {
        m_status.live->wanted.push_back(
            {site, Product::baseReflectivity, minutes < 0 ? 0 : kNow - minutes * kMinute, {}, state}
        );
    }
    [[nodiscard]] bool isReady() const { return whyNotReady(m_status, kNow).empty(); }

    ServerStatus m_status;
};

TEST_F(ReadinessTest, AnIdleServerIsReady) {
    EXPECT_TRUE(isReady());
    EXPECT_FALSE(newestAge(*m_status.live, kNow));
    m_status.isSourceReady = false;
    EXPECT_EQ(whyNotReady(m_status, kNow), "It still looks for its frames.");
    m_status.isEnding = true;
    EXPECT_EQ(whyNotReady(m_status, kNow), "It is about to end.");
}

TEST_F(ReadinessTest, ASilentProviderMakesItUnready) {
    want("TLX", 29, SourceState::provider);
    EXPECT_TRUE(isReady());
    m_status.live->wanted.clear();
    want("TLX", 30, SourceState::provider);
    EXPECT_EQ(whyNotReady(m_status, kNow), "No live weather has come for half an hour.");
    want("OKX", 3, SourceState::ok);
    EXPECT_TRUE(isReady()) << "something comes";
    EXPECT_EQ(newestAge(*m_status.live, kNow), 3 * kMinute);
}

TEST_F(ReadinessTest, WithoutANetworkItIsUnreadyOnceItHasRunForLong) {
    want("TLX", -1, SourceState::network);
    EXPECT_FALSE(isReady());
    m_status.started = kNow - 10 * kMinute;
    EXPECT_TRUE(isReady());
}

TEST_F(ReadinessTest, ARadarThatIsDownIsNotTheServersFault) {
    want("TLX", 90, SourceState::radarDown);
    want("TLX", 90, SourceState::radarDown);
    want("OKX", 90, SourceState::radarDown);
    want("LWX", -1, SourceState::noProduct);
    EXPECT_TRUE(isReady());
    want("BMX", 60, SourceState::radarDown);
    EXPECT_FALSE(isReady()) << "the weather has come to a stop";
}

TEST_F(ReadinessTest, AReplaysWeatherIsOld) {
    want("TLX", 300, SourceState::provider);
    m_status.replay.emplace(Replay{kNow - 1000 * kMinute, 1}, kNow);
    EXPECT_TRUE(isReady());
}

} // namespace
} // namespace raincast
