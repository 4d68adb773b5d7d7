// SPDX-License-Identifier: MIT
#include "core/busy_guard.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(BusyGuardTest, IsActiveUntilTheOutermostGuardIsGone) {
    EXPECT_FALSE(BusyGuard::active());
    {
        const BusyGuard outer;
        {
            const BusyGuard inner;
            EXPECT_TRUE(BusyGuard::active());
        }
        EXPECT_TRUE(BusyGuard::active());
    }
    EXPECT_FALSE(BusyGuard::active());
}

} // namespace
} // namespace raincast
