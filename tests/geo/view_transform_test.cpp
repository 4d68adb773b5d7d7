// SPDX-License-Identifier: MIT
#include "geo/view_transform.h"

#include <gtest/gtest.h>

#include <limits>

namespace raincast {
namespace {

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

struct Row {
    int zoom;
    ImagePixel origin;
    PagePoint page;
    ImagePixel image;
    PagePoint back; ///< what the image pixel's page pixel is
};

TEST(ViewTransformTest, StartsAtTheFirstPixelNotZoomed) {
    EXPECT_EQ(ViewTransform().zoom(), 0);
    EXPECT_EQ(ViewTransform().origin(), (ImagePixel{0, 0}));
}

TEST(ViewTransformTest, MapsByShifts) {
    const Row rows[] = {
        {0, {0, 0}, {10, 20}, {10, 20}, {10, 20}},      {0, {5, -7}, {10, 20}, {15, 13}, {10, 20}},
        {2, {4, 8}, {10, 20}, {44, 88}, {10, 20}},      {4, {0, 0}, {-1, -2}, {-16, -32}, {-1, -2}},
        {-1, {3, 3}, {5, 7}, {5, 6}, {4, 6}},           {-2, {0, 0}, {7, -1}, {1, -1}, {4, -4}},
        {-2, {100, 100}, {-5, -4}, {98, 99}, {-8, -4}},
    };
    for (const Row& row : rows) {
        const ViewTransform view(row.zoom, row.origin);
        EXPECT_EQ(view.toImage(row.page), row.image) << row.zoom;
        EXPECT_EQ(view.toPage(row.image), row.back) << row.zoom;
    }
}

TEST(ViewTransformTest, EveryPageIsShownAtItsPlace) {
    for (int zoom = ViewTransform::kLeastZoom; zoom <= ViewTransform::kMostZoom; ++zoom) {
        ViewTransform view(zoom, {0, 0});
        view.placeOrigin({120, 161}, {300, 275});
        const ImagePixel shown = view.toImage({120, 161});
        const int block = zoom > 0 ? 1 << zoom : 1;
        EXPECT_LE(shown.column, 300);
        EXPECT_GT(shown.column, 300 - block);
        EXPECT_LE(shown.row, 275);
        EXPECT_GT(shown.row, 275 - block);
        if (zoom > 0) {
            EXPECT_EQ(view.origin().column % block, 0);
            EXPECT_EQ(view.origin().row % block, 0);
        }
    }
}

TEST(ViewTransformTest, ZoomedOutTheOriginIsRoundedDownAlsoBelowZero) {
    ViewTransform view(2, {0, 0});
    view.placeOrigin({0, 0}, {-1, 7});
    EXPECT_EQ(view.origin(), (ImagePixel{-4, 4}));
}

TEST(ViewTransformTest, ZoomingKeepsThePixelUnderTheFixedPoint) {
    ViewTransform view;
    view.placeOrigin({120, 160}, {300, 275});
    for (const int step : {-1, -1, 1, 1}) {
        EXPECT_TRUE(view.zoomBy(step, {120, 160}));
        EXPECT_EQ(view.toImage({120, 160}), (ImagePixel{300, 275})) << view.zoom();
    }
    EXPECT_TRUE(view.zoomBy(1, {120, 160}));
    EXPECT_EQ(view.toImage({120, 160}), (ImagePixel{300, 274}));
}

TEST(ViewTransformTest, TheRangeEndsAreEnds) {
    ViewTransform view(ViewTransform::kMostZoom, {16, 32});
    const ViewTransform out = view;
    EXPECT_FALSE(view.zoomBy(1, {50, 50}));
    EXPECT_EQ(view, out);
    view = ViewTransform(ViewTransform::kLeastZoom, {1, 2});
    const ViewTransform in = view;
    EXPECT_FALSE(view.zoomBy(-1, {50, 50}));
    EXPECT_EQ(view, in);
}

TEST(ViewTransformTest, AZoomOutOfRangeBecomesNone) {
    EXPECT_EQ(ViewTransform(5, {1, 2}).zoom(), 0);
    EXPECT_EQ(ViewTransform(-3, {1, 2}).zoom(), 0);
    EXPECT_EQ(ViewTransform(kMost, {1, 2}).zoom(), 0);
    EXPECT_EQ(ViewTransform(kLeast, {1, 2}).origin(), (ImagePixel{1, 2}));
}

TEST(ViewTransformTest, NothingOverflows) {
    const ViewTransform out(4, {kMost, kLeast});
    EXPECT_EQ(out.toImage({kMost, kLeast}), (ImagePixel{kMost, kLeast}));
    const ViewTransform in(-2, {kMost, kLeast});
    EXPECT_EQ(in.toPage({kLeast, kMost}), (PagePoint{kLeast, kMost}));
    ViewTransform view(4, {0, 0});
    view.placeOrigin({kLeast, kMost}, {kMost, kLeast});
    EXPECT_EQ(view.origin(), (ImagePixel{kMost, kLeast}));
}

} // namespace
} // namespace raincast
