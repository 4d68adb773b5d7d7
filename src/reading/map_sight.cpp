// SPDX-License-Identifier: MIT
#include "reading/map_sight.h"

#include <algorithm>

namespace raincast {

namespace {

// Lines to places further away are drawn to there; painters take no more.
constexpr std::int32_t kFar = 20'000;

int near(std::int32_t place) {
    return std::clamp(place, -kFar, kFar);
}

} // namespace

QPoint MapSight::onPage(GeoPosition position) const {
    const auto placed = reference.geoToPixelForDrawing(position);
    const PagePoint point = view.toPage(placed.pixel);
    const int half = view.zoom() < 0 ? (1 << -view.zoom()) / 2 : 0;
    return {near(point.x) + half, near(point.y) + half};
}

GeoPosition MapSight::at(QPoint point) const {
    const ImagePixel pixel = view.toImage({point.x(), point.y()});
    return reference.pixelToGeo({pixel.column + 0.5, pixel.row + 0.5});
}

} // namespace raincast
