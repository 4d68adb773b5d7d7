// SPDX-License-Identifier: MIT
#include "server/sample_mark.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace raincast {

namespace {

constexpr int kLetterHeight = 7;
constexpr std::array<std::string_view, kLetterHeight> kWord = {
    " ###   ###  #   # ####  #     #####", "#   # #   # ## ## #   # #     #    ",
    "#     #   # # # # #   # #     #    ", " ###  ##### # # # ####  #     #### ",
    "    # #   # #   # #     #     #    ", "#   # #   # #   # #     #     #    ",
    " ###  #   # #   # #     ##### #####",
};
constexpr int kScale = 2; // pixels for each dot of a letter
constexpr int kLeft = 10;
constexpr int kTop = kFrameHeight - 10 - kLetterHeight * kScale;

void fill(IndexedPicture& picture, int left, int top, int size, std::uint8_t index) {
    for (int row = top; row < top + size; ++row) {
        const auto begin = picture.begin() + std::ptrdiff_t{row} * kFrameWidth + left;
        std::fill(begin, begin + size, index);
    }
}

/// Every dot of the word as a square, `margin` pixels larger on each side than the dot.
void drawWord(IndexedPicture& picture, int margin, std::uint8_t index) {
    int top = kTop - margin;
    for (const std::string_view line : kWord) {
        int left = kLeft - margin;
        for (const char dot : line) {
            if (dot == '#') {
                fill(picture, left, top, kScale + 2 * margin, index);
            }
            left += kScale;
        }
        top += kScale;
    }
}

} // namespace

void markAsSample(IndexedPicture& picture, std::uint8_t ink, std::uint8_t rim) {
    drawWord(picture, 2, rim);
    drawWord(picture, 0, ink);
}

} // namespace raincast
