// SPDX-License-Identifier: MIT
#include "image/sample_mark.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace raincast {
namespace {

IndexedPicture marked(std::uint8_t ground) {
    IndexedPicture picture(1, ground);
    markAsSample(picture, 16, 17);
    return picture;
}

int inkIn(const IndexedPicture& picture, int left, int top, int width, int height) {
    int ink = 0;
    for (int row = top; row < top + height; ++row) {
        const auto* const begin = picture.row(row) + left;
        ink += static_cast<int>(std::count(begin, begin + width, 16));
    }
    return ink;
}

// Dots of two by two pixels: 95 of them make the six letters.
constexpr int kInkOfWord = 4 * 95;

TEST(SampleMarkTest, TheWordStandsSmallInTheLowerLeftCorner) {
    const IndexedPicture picture = marked(7);
    EXPECT_EQ(inkIn(picture, 0, 520, 90, 30), kInkOfWord);
    EXPECT_EQ(picture.row(539)[14], 16); // its lowest pixels
    EXPECT_EQ(picture.row(545)[14], 7);
}

TEST(SampleMarkTest, ASmallWindowOnTheAntennaShowsAWholeWord) {
    EXPECT_GE(inkIn(marked(7), 300 - 120, 275 - 110, 240, 190), kInkOfWord);
}

TEST(SampleMarkTest, ASmallWindowAnywhereShowsMostOfAWord) {
    const IndexedPicture picture = marked(7);
    for (int left = 0; left + 240 <= 600; left += 10) {
        for (int top = 0; top + 240 <= 550; top += 10) {
            EXPECT_GT(inkIn(picture, left, top, 240, 240), kInkOfWord / 2) << left << ' ' << top;
        }
    }
}

TEST(SampleMarkTest, WordsCoverLittleOfThePicture) {
    const std::vector<std::uint8_t> picture = marked(7).pixels();
    EXPECT_LT(
        picture.size() - static_cast<std::size_t>(std::count(picture.begin(), picture.end(), 7)),
        picture.size() / 40
    );
}

TEST(SampleMarkTest, ASharpPictureHasTheWordsInTheSamePlaces) {
    IndexedPicture sharp(2, 7);
    markAsSample(sharp, 16, 17);
    const IndexedPicture picture = marked(7);
    for (int row = 0; row < sharp.height(); ++row) {
        for (int column = 0; column < sharp.width(); ++column) {
            ASSERT_EQ(sharp.row(row)[column], picture.row(row / 2)[column / 2]);
        }
    }
}

TEST(SampleMarkTest, ARimSurroundsEveryLetter) {
    IndexedPicture picture;
    markAsSample(picture, 1, 2);
    const std::vector<std::uint8_t>& pixels = picture.pixels();
    for (std::size_t i = 600; i < pixels.size() - 600; ++i) {
        if (pixels[i] != 1) {
            continue;
        }
        for (const std::size_t neighbour : {i - 1, i + 1, i - 600, i + 600}) {
            ASSERT_NE(pixels[neighbour], 0) << i;
        }
    }
}

} // namespace
} // namespace raincast
