// SPDX-License-Identifier: MIT
#include "core/busy_guard.h"
#include "core/idle_call.h"
#include "support/manual_timers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(IdleCallTest, CallsAtOnceOrWhenTheProgramIsNotBusyAnyMore) {
    ManualTimers timers;
    int calls = 0;
    IdleCall call(timers, [&calls] { ++calls; });
    call.call();
    EXPECT_EQ(calls, 1);
    {
        const BusyGuard busy;
        call.call();
        call.call();
        EXPECT_EQ(calls, 1);
        EXPECT_EQ(timers.fire(), 100);
        EXPECT_EQ(calls, 1);
        EXPECT_THAT(timers.running(), ElementsAre(100));
    }
    timers.fire();
    EXPECT_EQ(calls, 2);
    EXPECT_THAT(timers.running(), IsEmpty());
}

TEST(IdleCallTest, ACallThatWaitsCanBeCancelledOrOvertaken) {
    ManualTimers timers;
    int calls = 0;
    IdleCall call(timers, [&calls] { ++calls; });
    std::optional<BusyGuard> busy(std::in_place);
    call.call();
    call.cancel();
    EXPECT_THAT(timers.running(), IsEmpty());
    call.call();
    busy.reset();
    call.call();
    EXPECT_EQ(calls, 1);
    EXPECT_THAT(timers.running(), IsEmpty());
}

} // namespace
} // namespace raincast
