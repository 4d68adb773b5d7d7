// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/image_geometry.h"

#include <vector>

namespace raincast {

/// Where a place lies as an antenna sees it.
struct PolarPlace {
    float azimuthDegrees; ///< clockwise from north, 0 to below 360
    float km;             ///< along the ground
};

/// Where the centres of all pixels of a picture lie as an antenna sees them, row by row.
///
/// Layers are drawn by latitude and longitude, so an echo must be too: its place is the end of the
/// great circle that leaves the antenna in the beam's direction, as long as the way along the
/// ground. (A flat earth with the pictures' degrees per pixel would put an echo 230 km away up to
/// 7 km beside the county it falls on.) The earth's flattening is met by the sphere that fits the
/// ellipsoid at the antenna (Gauss's); what remains is less than 100 metres, an eighth of a pixel.
[[nodiscard]] std::vector<PolarPlace>
placePixels(const ImageGeometry& image, double antennaLatitude, double antennaLongitude);

/// The place of one position (degrees), as above.
[[nodiscard]] PolarPlace
seenFrom(double antennaLatitude, double antennaLongitude, double latitude, double longitude);

} // namespace raincast
