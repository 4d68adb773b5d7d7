// SPDX-License-Identifier: MIT
#include "maps/map_line.h"

#include <algorithm>

namespace raincast {

GeoBox boxAround(const std::vector<GeoPosition>& points) {
    if (points.empty()) {
        return {};
    }
    GeoBox box{points[0].latitude, points[0].longitude, points[0].latitude, points[0].longitude};
    for (const GeoPosition& point : points) {
        box.south = std::min(box.south, point.latitude);
        box.west = std::min(box.west, point.longitude);
        box.north = std::max(box.north, point.latitude);
        box.east = std::max(box.east, point.longitude);
    }
    return box;
}

} // namespace raincast
