// SPDX-License-Identifier: MIT
#include "image/sample_mark.h"

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
constexpr int kRim = 1;   // pixels around each letter

struct Corner {
    int left;
    int top;
};

// Every window of 240 by 240 pixels on the picture shows most of a word.
constexpr std::array kWords = {
    Corner{100, 80},  Corner{430, 80},  Corner{265, 200}, Corner{70, 310},
    Corner{460, 310}, Corner{265, 420}, Corner{10, 526},  Corner{520, 526},
};

/// The corner and the size are those in the smallest picture.
void fill(IndexedPicture& picture, int left, int top, int size, std::uint8_t index) {
    const int detail = picture.detail();
    for (int row = top * detail; row < (top + size) * detail; ++row) {
        std::uint8_t* const begin = picture.row(row) + std::ptrdiff_t{left} * detail;
        std::fill(begin, begin + std::ptrdiff_t{size} * detail, index);
    }
}

/// Every dot of the word as a square, `margin` pixels larger on each side than the dot.
void drawWord(IndexedPicture& picture, const Corner& corner, int margin, std::uint8_t index) {
    int top = corner.top - margin;
    for (const std::string_view line : kWord) {
        int left = corner.left - margin;
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
    for (const Corner& corner : kWords) {
        drawWord(picture, corner, kRim, rim);
        drawWord(picture, corner, 0, ink);
    }
}

} // namespace raincast
