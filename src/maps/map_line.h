// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"

#include <vector>

namespace raincast {

/// A part of the earth between two parallels and two meridians, in degrees, its edges included.
/// Longitudes are from -180 to 180; a box over the date line is not meant.
struct GeoBox {
    double south = 0;
    double west = 0;
    double north = 0;
    double east = 0;

    [[nodiscard]] bool contains(GeoPosition position) const {
        return south <= position.latitude && position.latitude <= north &&
               west <= position.longitude && position.longitude <= east;
    }
    [[nodiscard]] bool overlaps(const GeoBox& other) const {
        return south <= other.north && other.south <= north && west <= other.east &&
               other.west <= east;
    }
};

/// A line of a map: a river, a border, a road. The reader of its file says what the rank
/// means; the lower, the more important.
struct MapLine {
    int rank = 0;
    std::vector<GeoPosition> points;
};

/// The least box around a line; an empty line's is all zeros.
[[nodiscard]] GeoBox boxAround(const std::vector<GeoPosition>& points);

} // namespace raincast
