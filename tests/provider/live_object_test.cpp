// SPDX-License-Identifier: MIT
#include "provider/live_object.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

const FileTime kTime = fromCalendar({2026, 11, 21, 17, 49, 12});

TEST(LiveObjectTest, AKeyTellsSiteProductAndTime) {
    EXPECT_EQ(keyOf({"TLX", "N0B"}, kTime), "TLX_N0B_2026_11_21_17_49_12");
    EXPECT_EQ(dayKeyOf({"TLX", "N0B"}, kTime), "TLX_N0B_2026_11_21_");
    const auto object = readKey("TLX_p94r0_2026_11_21_17_49_12");
    ASSERT_TRUE(object);
    EXPECT_EQ(object->name, (LiveName{"TLX", "p94r0"}));
    EXPECT_EQ(object->time, kTime);
    EXPECT_EQ(object->minute(), fromCalendar({2026, 11, 21, 17, 49}));
}

TEST(LiveObjectTest, OtherTextsAreNoKeys) {
    for (const char* const text :
         {"", "TLX", "TLX_N0B_2026_11_21_17_49", "TLX_N0B_2026_11_21_17_49_61",
          "TLX_N0B_2026_02_30_17_49_12", "tTLX_N0B_2026_11_21_17_49_12",
          "../_N0B_2026_11_21_17_49_12", "TLX_../x_2026_11_21_17_49_12", "TLX__2026_11_21_17_49_12",
          "TLX_N0BX2026_11_21_17_49_12", "TLX_N0B_1960_11_21_17_49_12",
          "TLX_N0B_2026-11-21-17-49-12"}) {
        EXPECT_FALSE(readKey(text)) << text;
    }
}

} // namespace
} // namespace raincast
