// SPDX-License-Identifier: MIT
#include "drawing/row_spans.h"

#include <gtest/gtest.h>

#include <string>

namespace raincast {
namespace {

/// "2-4 7-8": first and end of each span.
std::string text(const RowSpans::Range& spans) {
    std::string result;
    for (const RowSpans::Span& span : spans) {
        result += std::to_string(span.first) + "-" + std::to_string(span.end) + " ";
    }
    return result;
}

QImage indexed(const std::vector<std::string>& rows) {
    QImage picture(
        static_cast<int>(rows[0].size()), static_cast<int>(rows.size()), QImage::Format_Indexed8
    );
    for (int row = 0; row < picture.height(); ++row) {
        for (int column = 0; column < picture.width(); ++column) {
            const char each = rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
            picture.scanLine(row)[column] = each == '.' ? 7 : each == 'a' ? 1 : 2;
        }
    }
    return picture;
}

std::vector<QRgb> colours() {
    std::vector<QRgb> result(256, 0);
    result[1] = 0xFF112233;
    result[2] = 0xFF445566;
    return result;
}

TEST(RowSpansTest, RunsOfWhatIsDrawn) {
    const RowSpans spans =
        RowSpans::ofIndices(indexed({"..ab..a", ".......", "abababa", "a.....b"}), colours());
    EXPECT_EQ(text(spans.within(0, 0, 7)), "2-4 6-7 ");
    EXPECT_EQ(text(spans.within(1, 0, 7)), "");
    EXPECT_EQ(text(spans.within(2, 0, 7)), "0-7 ");
    EXPECT_EQ(text(spans.within(3, 0, 7)), "0-1 6-7 ");
}

TEST(RowSpansTest, OnlyThoseThatReachIntoTheColumns) {
    const RowSpans spans = RowSpans::ofIndices(indexed({"aa..aa..aa"}), colours());
    EXPECT_EQ(text(spans.within(0, 0, 10)), "0-2 4-6 8-10 ");
    EXPECT_EQ(text(spans.within(0, 2, 8)), "4-6 ");
    EXPECT_EQ(text(spans.within(0, 1, 5)), "0-2 4-6 ");
    EXPECT_EQ(text(spans.within(0, 5, 9)), "4-6 8-10 ");
    EXPECT_EQ(text(spans.within(0, 6, 8)), "");
    EXPECT_EQ(text(spans.within(0, 3, 3)), "");
}

TEST(RowSpansTest, RowsThatAreNotThereHaveNone) {
    const RowSpans spans = RowSpans::ofIndices(indexed({"aaa"}), colours());
    EXPECT_EQ(text(spans.within(-1, 0, 3)), "");
    EXPECT_EQ(text(spans.within(1, 0, 3)), "");
    EXPECT_EQ(text(RowSpans().within(0, 0, 3)), "");
    EXPECT_EQ(text(RowSpans::ofColours(QImage(), 0).within(0, 0, 3)), "");
}

TEST(RowSpansTest, ThirtyTwoBitsHaveATransparentColour) {
    QImage picture(4, 1, QImage::Format_RGB32);
    picture.fill(0xFFFFFFFF);
    picture.setPixel(1, 0, 0xFFFDFDFD);
    EXPECT_EQ(text(RowSpans::ofColours(picture, 0xFFFFFFFF).within(0, 0, 4)), "1-2 ");
    EXPECT_EQ(text(RowSpans::ofColours(picture, 0).within(0, 0, 4)), "0-4 ");
}

} // namespace
} // namespace raincast
