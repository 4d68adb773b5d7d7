// SPDX-License-Identifier: MIT
#include "net/stall_meter.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr StallMeter::Time kStart{};

TEST(StallMeterTest, SilenceStallsAfterTheWindow) {
    StallMeter meter(seconds(30), 64);
    EXPECT_FALSE(meter.stalled(kStart, 0));
    EXPECT_FALSE(meter.stalled(kStart + milliseconds(29'999), 0));
    EXPECT_TRUE(meter.stalled(kStart + seconds(30), 0));
}

/// The second at which a body stalls that brings `bytesPerSecond` steadily; -1 when it does not
/// within ten minutes.
int stalledAfter(int bytesPerSecond) {
    StallMeter meter(seconds(30), 64);
    for (int second = 0; second <= 600; ++second) {
        if (meter.stalled(kStart + seconds(second), qint64{second} * bytesPerSecond)) {
            return second;
        }
    }
    return -1;
}

TEST(StallMeterTest, SteadyBodiesStallBelowTheLimit) {
    EXPECT_EQ(stalledAfter(1), 30);
    EXPECT_EQ(stalledAfter(63), 30);
    EXPECT_EQ(stalledAfter(64), -1);
    EXPECT_EQ(stalledAfter(100'000), -1);
}

TEST(StallMeterTest, WhatCameBeforeTheWindowDoesNotCount) {
    StallMeter meter(seconds(30), 64);
    EXPECT_FALSE(meter.stalled(kStart, 0));
    qint64 bytes = 1'000'000;
    int second = 1;
    for (; second < 100 && !meter.stalled(kStart + seconds(second), bytes); ++second) {
    }
    EXPECT_EQ(second, 31);
}

TEST(StallMeterTest, ABodyThatComesInGulpsGoesOn) {
    StallMeter meter(seconds(30), 64);
    for (int second = 0; second <= 600; ++second) {
        const qint64 gulps = second / 20;
        EXPECT_FALSE(meter.stalled(kStart + seconds(second), gulps * 5000)) << second;
    }
}

TEST(StallMeterTest, HowOftenItIsAskedDoesNotMatter) {
    StallMeter meter(seconds(30), 64);
    int at = 0;
    while (at < 60'000 && !meter.stalled(kStart + milliseconds(at), at / 1000)) {
        ++at;
    }
    EXPECT_EQ(at, 30'000);
}

} // namespace
} // namespace raincast
