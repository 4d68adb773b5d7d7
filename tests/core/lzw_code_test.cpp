// SPDX-License-Identifier: MIT
#include "core/lzw_code.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>

namespace raincast {
namespace {

using ::testing::ElementsAre;

TEST(LzwCodeTest, WritesClearTheCodesAndTheEnd) {
    // 100, 000, 001, 110 (for 0 1), then four bits each: 0010 (2), 0101 (the end).
    LzwCode code(2);
    const std::uint8_t pixels[] = {0, 1, 0, 1, 2};
    code.add(pixels);
    EXPECT_THAT(code.finish(), ElementsAre(0b0100'0100, 0b0010'1100, 0b0000'0101));
}

TEST(LzwCodeTest, HowPixelsAreCutIntoPartsIsAllTheSame) {
    std::vector<std::uint8_t> pixels;
    for (int i = 0; i < 50'000; ++i) {
        pixels.push_back(static_cast<std::uint8_t>(i * i / 7 % 23));
    }
    LzwCode whole(5);
    whole.add(pixels);
    LzwCode parts(5);
    for (std::size_t i = 0; i < pixels.size(); i += 1000) {
        parts.add(std::span(pixels).subspan(i, 1));
        parts.add({});
        parts.add(std::span(pixels).subspan(i + 1, 999));
    }
    EXPECT_EQ(whole.finish(), parts.finish());
}

TEST(LzwCodeTest, PixelsHaveNoMoreBitsThanTheyMay) {
    LzwCode code(2);
    const std::uint8_t pixels[] = {4, 0xFD, 8, 0x81, 6};
    code.add(pixels);
    EXPECT_THAT(code.finish(), ElementsAre(0b0100'0100, 0b0010'1100, 0b0000'0101));
}

} // namespace
} // namespace raincast
