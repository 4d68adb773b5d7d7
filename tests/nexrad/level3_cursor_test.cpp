// SPDX-License-Identifier: MIT
#include "nexrad/level3_cursor.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

using namespace std::string_view_literals;

TEST(Level3CursorTest, NumbersAreBigEndian) {
    Level3Cursor cursor("\x01\xFF\xFE\x01\x02\x03\x04\xFF\xFF\xFF\xFD\x80"sv);
    EXPECT_EQ(cursor.u8("a"), 1U);
    EXPECT_EQ(cursor.s16("b"), -2);
    EXPECT_EQ(cursor.u32("c"), 0x01020304U);
    EXPECT_EQ(cursor.s32("d"), -3);
    EXPECT_EQ(cursor.u8("e"), 0x80U);
    EXPECT_EQ(cursor.left(), 0U);
    EXPECT_TRUE(cursor.ok());
}

TEST(Level3CursorTest, MissingBytesAreASentenceAndEverythingAfterIsNothing) {
    Level3Cursor cursor("\x01\x02\x03"sv, 40);
    cursor.skip("the head", 2);
    EXPECT_EQ(cursor.u16("the code"), 0U);
    EXPECT_FALSE(cursor.ok());
    EXPECT_EQ(
        cursor.result().error(), "the code at byte 42 is cut off: 2 bytes are needed, 1 are left"
    );
    EXPECT_EQ(cursor.u8("another"), 0U);
    EXPECT_EQ(cursor.bytes("another", 1), "");
    EXPECT_EQ(
        cursor.result().error(), "the code at byte 42 is cut off: 2 bytes are needed, 1 are left"
    );
}

TEST(Level3CursorTest, HugeCountsDoNotWrapAround) {
    Level3Cursor cursor("abc"sv);
    EXPECT_EQ(cursor.bytes("all", static_cast<std::size_t>(-1)), "");
    EXPECT_FALSE(cursor.ok());
}

TEST(Level3CursorTest, TheFirstProblemStays) {
    Level3Cursor cursor("\x00\x07\x00\x08"sv, 10, "of the unpacked product");
    cursor.expect16("the divider", 7);
    EXPECT_TRUE(cursor.ok());
    cursor.expect16("the block number", 1);
    EXPECT_EQ(
        cursor.result().error(),
        "the block number at byte 12 of the unpacked product is 8 instead of 1"
    );
    cursor.fail("another", 0, "bad");
    EXPECT_EQ(
        cursor.result().error(),
        "the block number at byte 12 of the unpacked product is 8 instead of 1"
    );
}

} // namespace
} // namespace raincast
