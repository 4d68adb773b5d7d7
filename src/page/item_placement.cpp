// SPDX-License-Identifier: MIT
#include "page/item_placement.h"

#include "persist/little_endian.h"

#include <algorithm>
#include <cstdlib>

namespace raincast {

namespace {

constexpr std::int32_t kMostEdgeStyle = raisedOuter | sunkenOuter | raisedInner | sunkenInner;

Anchor anchorOf(std::int32_t near, std::int32_t far, int pageExtent) {
    if (far != pageExtent) {
        return Anchor::free;
    }
    return near != 0 ? Anchor::farEdge : Anchor::span;
}

void follow(Anchor anchor, std::int32_t& near, std::int32_t& far, int pageExtent) {
    if (anchor == Anchor::farEdge) {
        near = near - far + pageExtent;
    }
    if (anchor != Anchor::free) {
        far = pageExtent;
    }
}

bool near(const PageRectangle& rectangle) {
    const auto edges = {rectangle.left, rectangle.top, rectangle.right, rectangle.bottom};
    return std::all_of(edges.begin(), edges.end(), [](std::int32_t edge) {
        return -ItemPlacement::kFarthest <= edge && edge <= ItemPlacement::kFarthest;
    });
}

Anchor checkedAnchor(std::int32_t number) {
    const bool known = 0 <= number && number <= static_cast<std::int32_t>(Anchor::span);
    return known ? static_cast<Anchor>(number) : Anchor::free;
}

std::int32_t within(std::int32_t number, std::int32_t low, std::int32_t high, std::int32_t other) {
    return low <= number && number <= high ? number : other;
}

} // namespace

bool PageRectangle::contains(PagePoint point) const {
    return left <= point.x && point.x < right && top <= point.y && point.y < bottom;
}

PageRectangle PageRectangle::grown(std::int32_t pixels) const {
    return {left - pixels, top - pixels, right + pixels, bottom + pixels};
}

PageRectangle PageRectangle::shifted(std::int32_t dx, std::int32_t dy) const {
    return {left + dx, top + dy, right + dx, bottom + dy};
}

QRect PageRectangle::toRect() const {
    return {left, top, right - left, bottom - top};
}

void ItemPlacement::anchorTo(const QSize& page) {
    hAnchor = anchorOf(rectangle.left, rectangle.right, page.width());
    vAnchor = anchorOf(rectangle.top, rectangle.bottom, page.height());
}

PageRectangle ItemPlacement::anchoredOn(const QSize& page) const {
    PageRectangle result = rectangle;
    follow(hAnchor, result.left, result.right, page.width());
    follow(vAnchor, result.top, result.bottom, page.height());
    return result;
}

ItemPlacement::Bytes ItemPlacement::toBytes() const {
    const std::int32_t numbers[] = {
        rectangle.left,
        rectangle.top,
        rectangle.right,
        rectangle.bottom,
        fillColour,
        edgeStyle,
        frameWidth,
        clip,
        static_cast<std::int32_t>(hAnchor),
        static_cast<std::int32_t>(vAnchor)};
    Bytes bytes{};
    static_assert(sizeof(numbers) == sizeof(Bytes));
    std::size_t offset = 0;
    for (const std::int32_t number : numbers) {
        storeLittleEndian(number, &bytes[offset]);
        offset += sizeof(number);
    }
    return bytes;
}

void ItemPlacement::fromBytes(const Bytes& bytes) {
    const auto number = [&bytes](std::size_t index) {
        return loadLittleEndian<std::int32_t>(&bytes[index * sizeof(std::int32_t)]);
    };
    const ItemPlacement defaults;
    const PageRectangle stored{number(0), number(1), number(2), number(3)};
    rectangle = near(stored) ? stored : defaults.rectangle;
    fillColour = number(4);
    edgeStyle = within(number(5), 0, kMostEdgeStyle, defaults.edgeStyle);
    frameWidth = within(number(6), 0, kWidestFrame, defaults.frameWidth);
    clip = number(7);
    hAnchor = checkedAnchor(number(8));
    vAnchor = checkedAnchor(number(9));
}

} // namespace raincast
