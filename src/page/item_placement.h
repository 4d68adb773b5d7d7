// SPDX-License-Identifier: MIT
#pragma once

#include "geo/view_transform.h"

#include <QRect>
#include <QSize>

#include <array>
#include <cstddef>
#include <cstdint>

namespace raincast {

/// A rectangle of a page in its pixels (device pixels). Left and top belong to it, right and bottom
/// are just outside of it; a rectangle whose right is not beyond its left is empty.
struct PageRectangle {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;

    [[nodiscard]] bool isEmpty() const { return right <= left || bottom <= top; }
    [[nodiscard]] bool contains(PagePoint point) const;
    /// Rounded towards 0.
    [[nodiscard]] PagePoint centre() const { return {(left + right) / 2, (top + bottom) / 2}; }
    [[nodiscard]] PageRectangle grown(std::int32_t pixels) const;
    [[nodiscard]] PageRectangle shifted(std::int32_t dx, std::int32_t dy) const;
    /// The same pixels; an empty rectangle is a QRect that is empty as well.
    [[nodiscard]] QRect toRect() const;

    friend bool operator==(const PageRectangle&, const PageRectangle&) = default;
};

/// How an item follows a change of the page's size, along one axis.
enum class Anchor : std::int32_t {
    free = 0,    ///< not at all
    farEdge = 1, ///< stuck to the right or bottom edge, its size kept
    span = 2,    ///< from its left or top to the right or bottom edge
};

/// Where an item lies on its page and what surrounds it: ten 32-bit numbers, which are also what
/// the page file holds of every item.
struct ItemPlacement {
    static constexpr std::int32_t kNone = -1;

    PageRectangle rectangle{0, 0, 75, 50};
    /// Fills the frame before the item is drawn; 0x00BBGGRR, or kNone.
    std::int32_t fillColour = kNone;
    /// Edge drawn around the frame: a sum of EdgeStyle, or kNone.
    std::int32_t edgeStyle = kNone;
    std::int32_t frameWidth = 0; ///< by how much the frame exceeds the rectangle, on every side
    std::int32_t clip = 0;       ///< not 0: the item's drawing ends at its rectangle
    Anchor hAnchor = Anchor::free;
    Anchor vAnchor = Anchor::free;

    /// The rectangle grown by the frame.
    [[nodiscard]] PageRectangle frame() const { return rectangle.grown(frameWidth); }

    /// Computes both anchors from where the rectangle's edges lie on a page of this size.
    void anchorTo(const QSize& page);

    /// The rectangle that the anchors ask for on a page of a new size.
    [[nodiscard]] PageRectangle anchoredOn(const QSize& page) const;

    /// The bytes of the page file: the ten numbers in their order, little-endian.
    using Bytes = std::array<std::uint8_t, 40>;
    [[nodiscard]] Bytes toBytes() const;
    /// Takes the numbers over. One out of range takes its default: the whole rectangle if one
    /// edge lies more than kFarthest from the page's corner, a frame wider than kWidestFrame or
    /// negative, an unknown edge style or anchor. Fill colour and clip may be any number.
    void fromBytes(const Bytes& bytes);

    static constexpr std::int32_t kFarthest = 1'000'000;
    static constexpr std::int32_t kWidestFrame = 1000;

    friend bool operator==(const ItemPlacement&, const ItemPlacement&) = default;
};

/// The two one-pixel rings of an edge: each is raised or sunken or, with neither or both, absent.
enum EdgeStyle : std::int32_t {
    raisedOuter = 1,
    sunkenOuter = 2,
    raisedInner = 4,
    sunkenInner = 8,
};

} // namespace raincast
