// SPDX-License-Identifier: MIT
#include "page/layout_geometry.h"

#include <QSize>

#include <gtest/gtest.h>

namespace raincast {
namespace {

const QSize page(240, 300);
constexpr PageRectangle item{10, 20, 60, 70};
constexpr int kGrip = 12;

TEST(LayoutGeometry, TheGripIsTheCornersSquare) {
    EXPECT_EQ(gripOf(item, kGrip), (PageRectangle{48, 58, 60, 70}));
}

TEST(LayoutGeometry, ResizingFollowsThePointer) {
    EXPECT_EQ(resizedBy(item, 5, -7, page, kGrip), (PageRectangle{10, 20, 65, 63}));
}

TEST(LayoutGeometry, ResizingEndsAtThePagesEdges) {
    EXPECT_EQ(resizedBy(item, 1000, 1000, page, kGrip), (PageRectangle{10, 20, 240, 300}));
}

TEST(LayoutGeometry, ResizingLeavesRoomForTheGrip) {
    EXPECT_EQ(resizedBy(item, -1000, -1000, page, kGrip), (PageRectangle{10, 20, 22, 32}));
}

TEST(LayoutGeometry, TheGripWinsOverThePagesEdge) {
    const PageRectangle atTheEdge{235, 295, 240, 300};
    EXPECT_EQ(resizedBy(atTheEdge, 0, 0, page, kGrip), (PageRectangle{235, 295, 247, 307}));
}

TEST(LayoutGeometry, MovingKeepsTheSize) {
    EXPECT_EQ(movedBy(item, 5, -7, page), (PageRectangle{15, 13, 65, 63}));
}

TEST(LayoutGeometry, MovingStopsAtEveryEdge) {
    EXPECT_EQ(movedBy(item, 1000, 1000, page), (PageRectangle{190, 250, 240, 300}));
    EXPECT_EQ(movedBy(item, -1000, -1000, page), (PageRectangle{0, 0, 50, 50}));
}

TEST(LayoutGeometry, AnItemLargerThanThePageIsPinnedToTheTopLeft) {
    const PageRectangle large{0, 0, 400, 500};
    EXPECT_EQ(movedBy(large, 30, 30, page), large);
    EXPECT_EQ(movedBy(large.shifted(-50, -60), 3, 3, page), large);
}

} // namespace
} // namespace raincast
