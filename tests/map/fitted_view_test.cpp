// SPDX-License-Identifier: MIT
#include "map/fitted_view.h"
#include "page/item_placement.h"

#include <QSize>

#include <gtest/gtest.h>

namespace raincast {
namespace {

const QSize kImage(600, 550);

struct Fit {
    int width;
    int height;
    int zoom;
};

// Nine tenths are 540 by 495 pixels.
constexpr Fit kFits[] = {
    {3840, 2160, -2}, // 960 by 540 of the image's pixels
    {2160, 1980, -2}, {2159, 1980, -1}, {2160, 1979, -1}, {1920, 1080, -1}, {1080, 990, -1},
    {1079, 990, 0},   {1080, 989, 0},   {640, 540, 0},    {540, 495, 0},    {539, 495, 1},
    {540, 494, 1},    {270, 248, 1},    {270, 247, 2},    {240, 320, 2},    {135, 124, 2},
    {68, 62, 3},      {34, 31, 4},      {33, 31, 4},      {1, 1, 4},        {0, 0, 4},
};

TEST(FittedViewTest, NineTenthsAreSeenAtTheGreatestZoom) {
    for (const Fit& fit : kFits) {
        const PageRectangle rectangle{7, 9, 7 + fit.width, 9 + fit.height};
        const ViewTransform view = fittedView(rectangle, kImage);
        EXPECT_EQ(view.zoom(), fit.zoom) << fit.width << "x" << fit.height;
        const ImagePixel middle = view.toImage(rectangle.centre());
        const int block = fit.zoom > 0 ? 1 << fit.zoom : 1;
        EXPECT_NEAR(middle.column, 300, block - 1) << fit.width << "x" << fit.height;
        EXPECT_NEAR(middle.row, 275, block - 1) << fit.width << "x" << fit.height;
    }
}

TEST(FittedViewTest, WidthAndHeightBothCount) {
    EXPECT_EQ(fittedView({0, 0, 2000, 300}, kImage).zoom(), 1);
    EXPECT_EQ(fittedView({0, 0, 150, 2000}, kImage).zoom(), 2);
    EXPECT_EQ(fittedView({0, 0, 150, 2000}, {100, 550}).zoom(), 0);
    const ViewTransform covered = fittedView({0, 0, 540, 495}, kImage, 40); // what just suffices
    EXPECT_EQ(covered.zoom(), 0);
    EXPECT_EQ(covered.toPage({300, 275}), (PagePoint{270, 267}));
}

} // namespace
} // namespace raincast
