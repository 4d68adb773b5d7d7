// SPDX-License-Identifier: MIT
#include "nexrad/level3_wrapping.h"
#include "support/level3_maker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

/// What a file that is not damaged holds.
Level3Message unwrapped(const std::string& file) {
    return unwrapLevel3(file).value_or(Level3Message{"damaged", {}, 0, false});
}

/// The message alone, without anything around it.
std::string bare() {
    Level3ToMake product;
    product.wmoHeading.clear();
    product.awipsId.clear();
    return makeLevel3(product);
}

TEST(Level3WrappingTest, AMessageAloneIsItself) {
    const std::string file = bare();
    const Level3Message message = unwrapped(file);
    EXPECT_EQ(message.bytes.toStdString(), file);
    EXPECT_EQ(message.offset, 0U);
    EXPECT_EQ(message.awipsId, "");
}

TEST(Level3WrappingTest, HeadingsAreTakenOff) {
    const Level3Message message = unwrapped(makeLevel3({}));
    EXPECT_EQ(message.bytes.toStdString(), bare());
    EXPECT_EQ(message.offset, 30U);
    EXPECT_EQ(message.awipsId, "N0RTLX");
    EXPECT_FALSE(message.unpacked);
}

TEST(Level3WrappingTest, EitherHeadingMayBeMissing) {
    Level3ToMake product;
    product.wmoHeading.clear();
    EXPECT_EQ(unwrapped(makeLevel3(product)).awipsId, "N0RTLX");
    product = {};
    product.awipsId.clear();
    EXPECT_EQ(unwrapped(makeLevel3(product)).awipsId, "");
    EXPECT_EQ(unwrapped(makeLevel3(product)).bytes.toStdString(), bare());
}

TEST(Level3WrappingTest, StartOfHeadingAndSequenceNumberAreTakenOff) {
    Level3ToMake product;
    product.startOfHeading = true;
    const Level3Message message = unwrapped(makeLevel3(product));
    EXPECT_EQ(message.awipsId, "N0RTLX");
    EXPECT_EQ(message.bytes.toStdString(), bare() + "\r\r\n\x03");
}

TEST(Level3WrappingTest, ShortAwipsIdsArePaddedWithBlanks) {
    Level3ToMake product;
    product.awipsId = "N0RX  ";
    EXPECT_EQ(unwrapped(makeLevel3(product)).awipsId, "N0RX");
}

TEST(Level3WrappingTest, ZlibFramesAreUnpackedWithTheHeadingsInThem) {
    for (const int frames : {1, 3}) {
        Level3ToMake product;
        product.zlibFrames = frames;
        product.startOfHeading = frames == 3;
        const Level3Message message = unwrapped(makeLevel3(product));
        EXPECT_EQ(message.bytes.toStdString(), bare());
        EXPECT_EQ(message.awipsId, "N0RTLX");
        EXPECT_TRUE(message.unpacked);
        EXPECT_EQ(message.offset, 30U);
    }
}

TEST(Level3WrappingTest, ADamagedFrameIsNamedWithItsPlace) {
    Level3ToMake product;
    product.zlibFrames = 1;
    std::string file = makeLevel3(product);
    file.resize(60);
    EXPECT_EQ(
        unwrapLevel3(file).error(),
        "zlib frame at byte 30 is damaged, cut off or longer than 8 MiB with those before it"
    );
}

TEST(Level3WrappingTest, WhatIsNoHeadingStays) {
    const std::string letters(1000, 'A');
    const struct {
        std::string file;
        std::string bytes;
        std::string awipsId;
    } rows[] = {
        {"", "", ""},
        {"\x01", "", ""},
        {"\x01\r\r\n", "", ""},
        {"\r\n\r\n", "\r\n\r\n", ""},
        {"SDUS54 KOUN 202016", "SDUS54 KOUN 202016", ""},
        {"SDUS54 KOUN 202016\r\r\n", "", ""},
        {"SDUS54-KOUN 202016\r\r\n", "SDUS54-KOUN 202016\r\r\n", ""},
        {"N0RTLX\r\r\n", "", "N0RTLX"},
        {"n0rtlx\r\r\n", "n0rtlx\r\r\n", ""},
        {letters, letters, ""},
    };
    for (const auto& row : rows) {
        const Level3Message message = unwrapped(row.file);
        EXPECT_EQ(message.bytes.toStdString(), row.bytes) << row.file;
        EXPECT_EQ(message.awipsId, row.awipsId) << row.file;
        EXPECT_EQ(message.offset, row.file.size() - row.bytes.size()) << row.file;
    }
    // This is how a zlib stream begins.
    EXPECT_THAT(
        unwrapLevel3("x\x9C").error().toStdString(), testing::HasSubstr("at byte 0 is damaged")
    );
}

} // namespace
} // namespace raincast
