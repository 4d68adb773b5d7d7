// SPDX-License-Identifier: MIT
#include "window/dialog_layout.h"

#include <QRect>

#include <gtest/gtest.h>

#include <ostream>

namespace raincast {
namespace {

// A rectangle that prints itself when it is not the expected one.
struct Place {
    int x, y, width, height;

    explicit Place(const QRect& rect)
        : x(rect.x()), y(rect.y()), width(rect.width()), height(rect.height()) {}
    Place(int left, int top, int w, int h) : x(left), y(top), width(w), height(h) {}
    friend bool operator==(const Place&, const Place&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const Place& p) {
        return stream << p.x << ',' << p.y << ' ' << p.width << 'x' << p.height;
    }
};

const QRect kDialog(100, 200, 300, 150); // right 400, bottom 350
const QRect kControl(150, 250, 50, 20);
constexpr int kMargin = 4;

TEST(DialogLayoutTest, TheMarginIsFourPixelsAt96DotsPerInch) {
    struct Row {
        int logPixelsY;
        int margin;
    };
    const Row rows[] = {{-1, 0}, {0, 0}, {72, 3}, {96, 4}, {107, 4}, {108, 5}, {120, 5}, {192, 8}};
    for (const Row& row : rows) {
        EXPECT_EQ(dialogMargin(row.logPixelsY), row.margin) << row.logPixelsY;
    }
}

TEST(DialogLayoutTest, AnchorsTieEachAxisByItself) {
    struct Row {
        int flags;
        Place expected;
    };
    const Row rows[] = {
        {0, {346, 326, 50, 20}},
        {anchorRight | anchorBottom, {346, 326, 50, 20}},
        {anchorLeft, {104, 326, 50, 20}},
        {anchorTop, {346, 204, 50, 20}},
        {anchorLeft | anchorTop, {104, 204, 50, 20}},
        {anchorLeftAndRight, {104, 326, 292, 20}},
        {anchorTopAndBottom, {346, 204, 50, 142}},
        {anchorLeftAndRight | anchorTopAndBottom, {104, 204, 292, 142}},
        {anchorLeft | anchorTopAndBottom | 0x100, {104, 204, 50, 142}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Place(anchored(kDialog, kControl, row.flags, kMargin)), row.expected)
            << row.flags;
    }
}

TEST(DialogLayoutTest, AControlCanBePlacedBesideAnother) {
    const QRect reference(200, 260, 60, 30); // right 260, bottom 290
    struct Row {
        VerticalRelation vertical;
        HorizontalRelation horizontal;
        bool stretchVertically;
        bool stretchHorizontally;
        Place expected;
    };
    const Row rows[] = {
        {sameRow, sameColumn, false, false, {150, 250, 50, 20}},
        {sameRow, sameColumn, true, true, {150, 250, 50, 20}},
        {above, sameColumn, false, false, {150, 236, 50, 20}},
        {above, sameColumn, true, false, {150, 204, 50, 52}},
        {below, sameColumn, false, false, {150, 294, 50, 20}},
        {below, sameColumn, true, false, {150, 294, 50, 52}},
        {sameRow, leftOf, false, false, {146, 250, 50, 20}},
        {sameRow, leftOf, false, true, {104, 250, 92, 20}},
        {sameRow, rightOf, false, false, {264, 250, 50, 20}},
        {sameRow, rightOf, false, true, {264, 250, 132, 20}},
        {below, rightOf, true, true, {264, 294, 132, 52}},
        {static_cast<VerticalRelation>(3),
         static_cast<HorizontalRelation>(7),
         true,
         true,
         {150, 250, 50, 20}},
    };
    for (const Row& row : rows) {
        const QRect placed = placedNextTo(
            kDialog, reference, kControl, row.vertical, row.horizontal, row.stretchVertically,
            row.stretchHorizontally, kMargin
        );
        EXPECT_EQ(Place(placed), row.expected) << row.vertical << ' ' << row.horizontal;
    }
}

TEST(DialogLayoutTest, ADialogTooSmallForAStretchedControlLeavesItNothing) {
    const QRect tiny(0, 0, 6, 6);
    const int stretched = anchorLeftAndRight | anchorTopAndBottom;
    EXPECT_EQ(Place(anchored(tiny, kControl, stretched, kMargin)), Place(4, 4, 0, 0));
}

} // namespace
} // namespace raincast
