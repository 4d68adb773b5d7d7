// SPDX-License-Identifier: MIT
#include "geo/view_transform.h"

#include <algorithm>
#include <limits>

namespace raincast {

namespace {

constexpr std::int32_t within32Bits(std::int64_t value) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(
        value, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()
    ));
}

// Page distance to image distance.
constexpr std::int64_t scaled(std::int64_t page, int zoom) {
    return zoom >= 0 ? page << zoom : page >> -zoom;
}

constexpr std::int32_t toImageAxis(std::int32_t page, std::int32_t origin, int zoom) {
    return within32Bits(origin + scaled(page, zoom));
}

constexpr std::int32_t toPageAxis(std::int32_t image, std::int32_t origin, int zoom) {
    const std::int64_t offset = std::int64_t{image} - origin;
    return within32Bits(zoom >= 0 ? offset >> zoom : offset << -zoom);
}

constexpr std::int32_t originFor(std::int32_t page, std::int32_t image, int zoom) {
    std::int64_t origin = image - scaled(page, zoom);
    if (zoom > 0) {
        origin &= -(std::int64_t{1} << zoom);
    }
    return within32Bits(origin);
}

constexpr bool inRange(int zoom) {
    return ViewTransform::kLeastZoom <= zoom && zoom <= ViewTransform::kMostZoom;
}

} // namespace

ViewTransform::ViewTransform(int zoom, ImagePixel origin)
    : m_zoom(inRange(zoom) ? zoom : 0), m_origin(origin) {}

ImagePixel ViewTransform::toImage(PagePoint point) const {
    return {
        toImageAxis(point.x, m_origin.column, m_zoom), toImageAxis(point.y, m_origin.row, m_zoom)};
}

PagePoint ViewTransform::toPage(ImagePixel pixel) const {
    return {
        toPageAxis(pixel.column, m_origin.column, m_zoom),
        toPageAxis(pixel.row, m_origin.row, m_zoom)};
}

void ViewTransform::placeOrigin(PagePoint point, ImagePixel pixel) {
    m_origin = {originFor(point.x, pixel.column, m_zoom), originFor(point.y, pixel.row, m_zoom)};
}

ViewTransform ViewTransform::finer(int steps) const {
    const auto times = std::int64_t{1} << steps;
    return {
        m_zoom + steps,
        {within32Bits(m_origin.column * times), within32Bits(m_origin.row * times)}};
}

bool ViewTransform::zoomBy(int step, PagePoint fixed) {
    if (!inRange(m_zoom + step)) {
        return false;
    }
    const ImagePixel pixel = toImage(fixed);
    m_zoom += step;
    placeOrigin(fixed, pixel);
    return true;
}

} // namespace raincast
