// SPDX-License-Identifier: MIT
#include "persist/little_endian.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

enum class Colour : std::uint16_t { red = 0x0102 };

TEST(LittleEndianTest, StoresTheLowByteFirst) {
    EXPECT_EQ(toLittleEndian<std::uint32_t>(0x01020304), (std::array<std::uint8_t, 4>{4, 3, 2, 1}));
    EXPECT_EQ(toLittleEndian<std::int16_t>(-2), (std::array<std::uint8_t, 2>{0xFE, 0xFF}));
    EXPECT_EQ(toLittleEndian(1.0F), (std::array<std::uint8_t, 4>{0, 0, 0x80, 0x3F}));
    EXPECT_EQ(toLittleEndian(-2.0), (std::array<std::uint8_t, 8>{0, 0, 0, 0, 0, 0, 0, 0xC0}));
    EXPECT_EQ(toLittleEndian(Colour::red), (std::array<std::uint8_t, 2>{2, 1}));
    EXPECT_EQ(toLittleEndian(true), (std::array<std::uint8_t, 1>{1}));
    EXPECT_EQ(toLittleEndian(false), (std::array<std::uint8_t, 1>{0}));
}

TEST(LittleEndianTest, LoadsWhatItStores) {
    EXPECT_EQ(loadLittleEndian<std::uint32_t>(toLittleEndian(0x89ABCDEFU).data()), 0x89ABCDEFU);
    EXPECT_EQ(loadLittleEndian<float>(toLittleEndian(-0.5F).data()), -0.5F);
    EXPECT_EQ(loadLittleEndian<double>(toLittleEndian(37.25).data()), 37.25);
    EXPECT_EQ(loadLittleEndian<Colour>(toLittleEndian(Colour::red).data()), Colour::red);
    const std::uint8_t nine = 9;
    EXPECT_TRUE(loadLittleEndian<bool>(&nine));
}

} // namespace
} // namespace raincast
