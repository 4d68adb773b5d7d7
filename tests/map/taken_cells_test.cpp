// SPDX-License-Identifier: MIT
#include "map/taken_cells.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

const QRect kArea(100, 200, 41, 30);

TEST(TakenCellsTest, WhatIsTakenIsNotFree) {
    TakenCells cells(kArea, 4);
    EXPECT_TRUE(cells.take({110, 210, 9, 5}));
    EXPECT_FALSE(cells.isFree({118, 214, 1, 1})) << "its last pixel";
    EXPECT_FALSE(cells.isFree({110, 210, 1, 1}));
    EXPECT_TRUE(cells.isFree({107, 210, 1, 1})) << "the cell before";
    EXPECT_TRUE(cells.isFree({110, 216, 9, 1})) << "the row of cells below";
    EXPECT_FALSE(cells.take({100, 200, 41, 30}));
    EXPECT_TRUE(cells.isFree({100, 200, 4, 4})) << "what is refused takes nothing";
}

TEST(TakenCellsTest, TheLastCellsMayBeCut) {
    TakenCells cells(kArea, 4);
    EXPECT_TRUE(cells.take({140, 229, 1, 1}));
    EXPECT_FALSE(cells.isFree({140, 228, 1, 1}));
    EXPECT_TRUE(cells.isFree({136, 228, 4, 2})) << "the cell beside it";
}

TEST(TakenCellsTest, OutsideEverythingIsFree) {
    TakenCells cells(kArea, 4);
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(cells.take({90, 200, 10, 30}));
        EXPECT_TRUE(cells.take({141, 200, 10, 30}));
        EXPECT_TRUE(cells.take({}));
    }
    EXPECT_TRUE(cells.take({90, 190, 1000, 1000}));
    EXPECT_FALSE(cells.isFree({140, 229, 50, 50})) << "of a box that reaches in, what is inside";
}

} // namespace
} // namespace raincast
