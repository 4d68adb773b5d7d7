// SPDX-License-Identifier: MIT
#include "server/sample_mark.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(SampleMarkTest, TheWordStandsSmallInTheLowerLeftCorner) {
    IndexedPicture picture(600U * 550U, 7);
    markAsSample(picture, 16, 17);
    int ink = 0;
    int rim = 0;
    for (int i = 0; i < 600 * 550; ++i) {
        const std::uint8_t index = picture[static_cast<std::size_t>(i)];
        if (index == 7) {
            continue;
        }
        EXPECT_LT(i % 600, 90);
        EXPECT_GT(i / 600, 520);
        (index == 16 ? ink : rim) += 1;
    }
    // Dots of two by two pixels: 95 of them make the six letters.
    EXPECT_EQ(ink, 4 * 95);
    EXPECT_GT(rim, ink / 2);
}

TEST(SampleMarkTest, ARimSurroundsEveryLetter) {
    IndexedPicture picture(600U * 550U, 0);
    markAsSample(picture, 1, 2);
    for (std::size_t i = 600; i < picture.size() - 600; ++i) {
        if (picture[i] != 1) {
            continue;
        }
        for (const std::size_t neighbour : {i - 1, i + 1, i - 600, i + 600}) {
            ASSERT_NE(picture[neighbour], 0) << i;
        }
    }
}

} // namespace
} // namespace raincast
