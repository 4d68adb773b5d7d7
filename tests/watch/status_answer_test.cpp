// SPDX-License-Identifier: MIT
#include "core/replay_clock.h"
#include "support/test_clock.h"
#include "watch/status_answer.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(StatusAnswerTest, SaysWhetherProvidersCanBeReached) {
    EXPECT_TRUE(saysUnreachable("{\"reachable\": false}"));
    for (const char* const status : {"", "{}", "[]", "{\"reachable\": true}", "<html>", "false"}) {
        EXPECT_FALSE(saysUnreachable(status)) << status;
    }
}

TEST(StatusAnswerTest, SaysWhenItsReplayStarted) {
    EXPECT_EQ(
        replayStartIn("{\"replay\": {\"started\": \"2026-11-21T17:40:00.500Z\"}}"),
        fromCalendar({2026, 11, 21, 17, 40}) + kFileTimePerSecond / 2
    );
    for (const char* const status :
         {"", "{}", "{\"replay\": {}}", "{\"replay\": {\"started\": 5}}",
          "{\"replay\": {\"started\": \"2026-02-30T17:40:00Z\"}}"}) {
        EXPECT_FALSE(replayStartIn(status)) << status;
    }
}

// A server whose clock is wrong, or that is none of ours.
TEST(StatusAnswerTest, WhateverTheStartTheReplayShowsATimeThatCanBe) {
    const TestClock world(fromCalendar({2026, 11, 21, 17, 0}));
    const Replay replay{fromCalendar({2021, 12, 11, 2, 0}), Replay::kMostSpeed};
    for (const char* const start :
         {"0001-01-01T00:00:00Z", "1970-01-01T00:00:00Z", "9999-12-31T23:59:59Z"}) {
        const QByteArray status = QByteArray("{\"replay\": {\"started\": \"") + start + "\"}}";
        const ReplayClock clock(replay, replayStartIn(status).value());
        EXPECT_GE(clock.now(), replay.begin) << start;
        EXPECT_LE(clock.now(), world.now()) << start;
    }
}

} // namespace
} // namespace raincast
