// SPDX-License-Identifier: MIT
#include "nexrad/level3_kinds.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace raincast {
namespace {

TEST(Level3KindsTest, CodesStandInOrderAndAreFound) {
    int last = 0;
    for (const Level3Kind& kind : level3Kinds()) {
        EXPECT_GT(kind.code, last);
        EXPECT_EQ(findLevel3Kind(kind.code), &kind);
        EXPECT_GT(kind.cellKm, 0);
        last = kind.code;
    }
    EXPECT_EQ(level3Kinds().size(), 13U);
    EXPECT_EQ(findLevel3Kind(165), nullptr);
    EXPECT_EQ(findLevel3Kind(0), nullptr);
}

TEST(Level3KindsTest, EveryProductOfTheTreeHasACode) {
    for (const Product product : kAllProducts) {
        const auto kinds = level3Kinds();
        EXPECT_TRUE(std::any_of(kinds.begin(), kinds.end(), [&](const Level3Kind& kind) {
            return kind.product == product;
        })) << codeOf(product);
    }
}

} // namespace
} // namespace raincast
