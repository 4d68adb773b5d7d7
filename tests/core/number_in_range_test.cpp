// SPDX-License-Identifier: MIT
#include "core/number_in_range.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(NumberInRangeTest, BothEndsBelongToTheRange) {
    EXPECT_EQ(numberInRange(u"2", 2, 25), 2);
    EXPECT_EQ(numberInRange(u"25", 2, 25), 25);
    EXPECT_EQ(numberInRange(u"1", 2, 25), std::nullopt);
    EXPECT_EQ(numberInRange(u"26", 2, 25), std::nullopt);
    EXPECT_EQ(numberInRange(u"-3", -5, 5), -3);
}

TEST(NumberInRangeTest, OnlyAWholeNumberIsOne) {
    EXPECT_EQ(numberInRange(u" 7 ", 0, 9), 7);
    for (const char* text : {"", " ", "seven", "7x", "7.0", "7,0", "0x7", "99999999999"}) {
        EXPECT_EQ(numberInRange(QString(text), 0, 1000), std::nullopt) << text;
    }
}

} // namespace
} // namespace raincast
