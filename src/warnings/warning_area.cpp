// SPDX-License-Identifier: MIT
#include "warnings/warning_area.h"

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

/// Where a position lies, seen from a ring.
enum class Place { outside, edge, inside };

struct Point {
    double east = 0; ///< degrees from the position, as is north
    double north = 0;
};

constexpr double kOnEdge = 1e-9; // degrees: a tenth of a millimetre

double shortWay(double degrees) {
    return std::remainder(degrees, 360);
}

/// The position is at (0, 0).
bool isOnSide(Point a, Point b) {
    const double length = std::hypot(b.east - a.east, b.north - a.north);
    const double across = a.east * b.north - a.north * b.east;
    const bool isOnLine = std::abs(across) <= kOnEdge * length;
    const bool isBetween =
        std::min(a.east, b.east) <= kOnEdge && std::max(a.east, b.east) >= -kOnEdge &&
        std::min(a.north, b.north) <= kOnEdge && std::max(a.north, b.north) >= -kOnEdge;
    return isOnLine && isBetween;
}

/// Whether a ray from the position to the east meets the side.
bool meetsRay(Point a, Point b) {
    if ((a.north > 0) == (b.north > 0)) {
        return false;
    }
    return a.east - a.north * (b.east - a.east) / (b.north - a.north) > 0;
}

Place placeIn(const WarningText::Ring& ring, const GeoPosition& position) {
    if (ring.size() < 3) {
        return Place::outside;
    }
    const auto latitude = [&](const GeoPosition& corner) {
        return corner.latitude - position.latitude;
    };
    // Each corner is the one of its meridians that is nearest to the corner before.
    Point from{shortWay(ring[0].longitude - position.longitude), latitude(ring[0])};
    bool isInside = false;
    for (std::size_t i = 1; i <= ring.size(); ++i) {
        const GeoPosition& corner = ring[i % ring.size()];
        const double step = shortWay(corner.longitude - ring[i - 1].longitude);
        const Point to{from.east + step, latitude(corner)};
        if (isOnSide(from, to)) {
            return Place::edge;
        }
        isInside = isInside != meetsRay(from, to);
        from = to;
    }
    return isInside ? Place::inside : Place::outside;
}

bool holdsAt(const WarningText::Polygon& polygon, const GeoPosition& position) {
    if (polygon.empty() || placeIn(polygon.front(), position) == Place::outside) {
        return false;
    }
    return std::none_of(polygon.begin() + 1, polygon.end(), [&](const WarningText::Ring& hole) {
        return placeIn(hole, position) == Place::inside;
    });
}

} // namespace

bool warnsAt(const WarningText& warning, const GeoPosition& position) {
    return std::isfinite(position.latitude) && std::isfinite(position.longitude) &&
           std::any_of(
               warning.polygons.begin(), warning.polygons.end(),
               [&](const WarningText::Polygon& polygon) { return holdsAt(polygon, position); }
           );
}

} // namespace raincast
