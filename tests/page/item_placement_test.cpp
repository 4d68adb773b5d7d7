// SPDX-License-Identifier: MIT
#include "page/item_placement.h"
#include "persist/little_endian.h"

#include <gtest/gtest.h>

#include <limits>

namespace raincast {
namespace {

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

ItemPlacement placement(const PageRectangle& rectangle) {
    ItemPlacement result;
    result.rectangle = rectangle;
    return result;
}

// A placement read from a block in which one number was replaced.
ItemPlacement readWith(std::size_t index, std::int32_t number) {
    auto bytes = placement({1, 2, 30, 40}).toBytes();
    storeLittleEndian(number, &bytes[index * 4]);
    ItemPlacement result;
    result.fromBytes(bytes);
    return result;
}

TEST(ItemPlacement, IsFortyBytesInTheOrderOfItsFields) {
    ItemPlacement item = placement({1, -2, 0x01020304, 50});
    item.fillColour = 0x00332211;
    item.edgeStyle = 5;
    item.frameWidth = 7;
    item.clip = 1;
    item.hAnchor = Anchor::span;
    item.vAnchor = Anchor::farEdge;
    const ItemPlacement::Bytes expected{1, 0, 0,    0,    0xFE, 0xFF, 0xFF, 0xFF, 4, 3, 2, 1, 50, 0,
                                        0, 0, 0x11, 0x22, 0x33, 0,    5,    0,    0, 0, 7, 0, 0,  0,
                                        1, 0, 0,    0,    2,    0,    0,    0,    1, 0, 0, 0};
    EXPECT_EQ(item.toBytes(), expected);
}

TEST(ItemPlacement, StartsInTheCornerWithoutAnythingAroundIt) {
    const ItemPlacement::Bytes expected{
        0,    0,    0,    0,    0, 0, 0, 0, 75, 0, 0, 0, 50, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF,
        0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 0,  0, 0, 0, 0,  0, 0, 0, 0,    0,    0,    0};
    EXPECT_EQ(ItemPlacement().toBytes(), expected);
}

TEST(ItemPlacement, ReadsWhatItWrote) {
    ItemPlacement item = placement({-5, 6, 1'000'000, -1'000'000});
    item.fillColour = 0x00FFFFFF;
    item.edgeStyle = 15;
    item.frameWidth = 1000;
    item.clip = 2;
    item.hAnchor = Anchor::farEdge;
    ItemPlacement read;
    read.fromBytes(item.toBytes());
    EXPECT_EQ(read, item);
}

TEST(ItemPlacement, NumbersOutOfRangeTakeTheirDefaults) {
    const PageRectangle corner{0, 0, 75, 50};
    for (const std::int32_t edge : {kLeast, -1'000'001, 1'000'001, kMost}) {
        for (std::size_t index = 0; index < 4; ++index) {
            EXPECT_EQ(readWith(index, edge).rectangle, corner) << edge << " at " << index;
        }
    }
    for (const std::int32_t style : {kLeast, -2, 16, kMost}) {
        EXPECT_EQ(readWith(5, style).edgeStyle, ItemPlacement::kNone) << style;
    }
    for (const std::int32_t width : {kLeast, -1, 1001, kMost}) {
        EXPECT_EQ(readWith(6, width).frameWidth, 0) << width;
    }
    for (const std::int32_t anchor : {kLeast, -1, 3, kMost}) {
        EXPECT_EQ(readWith(8, anchor).hAnchor, Anchor::free) << anchor;
        EXPECT_EQ(readWith(9, anchor).vAnchor, Anchor::free) << anchor;
    }
}

TEST(ItemPlacement, OneNumberOutOfRangeLeavesTheOthers) {
    const ItemPlacement read = readWith(6, -7);
    EXPECT_EQ(read.rectangle, (PageRectangle{1, 2, 30, 40}));
}

TEST(ItemPlacement, AnyColourAndAnyClipAreKept) {
    for (const std::int32_t number : {kLeast, -1, 0, kMost}) {
        EXPECT_EQ(readWith(4, number).fillColour, number);
        EXPECT_EQ(readWith(7, number).clip, number);
    }
}

TEST(ItemPlacement, AnItemOnBothEdgesSpansThePage) {
    ItemPlacement item = placement({0, 0, 240, 300});
    item.anchorTo({240, 300});
    EXPECT_EQ(item.hAnchor, Anchor::span);
    EXPECT_EQ(item.vAnchor, Anchor::span);
}

TEST(ItemPlacement, AnItemOnTheFarEdgeAloneSticksToIt) {
    ItemPlacement item = placement({10, 0, 240, 20});
    item.anchorTo({240, 300});
    EXPECT_EQ(item.hAnchor, Anchor::farEdge);
    EXPECT_EQ(item.vAnchor, Anchor::free);
    item.rectangle = {0, -1, 239, 300};
    item.anchorTo({240, 300});
    EXPECT_EQ(item.hAnchor, Anchor::free);
    EXPECT_EQ(item.vAnchor, Anchor::farEdge);
}

TEST(ItemPlacement, AnchorsMoveTheEdgesThatTheyHold) {
    ItemPlacement item = placement({10, 20, 240, 300});
    const QSize page(400, 200);
    EXPECT_EQ(item.anchoredOn(page), item.rectangle);
    item.hAnchor = Anchor::farEdge;
    item.vAnchor = Anchor::span;
    EXPECT_EQ(item.anchoredOn(page), (PageRectangle{170, 20, 400, 200}));
    item.hAnchor = Anchor::span;
    item.vAnchor = Anchor::farEdge;
    EXPECT_EQ(item.anchoredOn(page), (PageRectangle{10, -80, 400, 200}));
}

TEST(PageRectangle, HoldsItsLeftAndTopButNotItsRightAndBottom) {
    const PageRectangle item{10, 20, 30, 40};
    EXPECT_TRUE(item.contains({10, 20}));
    EXPECT_TRUE(item.contains({29, 39}));
    EXPECT_FALSE(item.contains({9, 20}));
    EXPECT_FALSE(item.contains({10, 19}));
    EXPECT_FALSE(item.contains({30, 39}));
    EXPECT_FALSE(item.contains({29, 40}));
}

TEST(PageRectangle, TurnedInsideOutItIsEmpty) {
    const PageRectangle item{30, 20, 10, 40};
    EXPECT_TRUE(item.isEmpty());
    EXPECT_TRUE(item.toRect().isEmpty());
    EXPECT_FALSE(item.contains({20, 30}));
}

} // namespace
} // namespace raincast
