// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace raincast {

/// A place on the earth in decimal degrees, north and east positive.
struct GeoPosition {
    double latitude = 0;
    double longitude = 0;

    friend bool operator==(const GeoPosition&, const GeoPosition&) = default;
};

/// A point of an image: column to the right, row downwards, with fractions of a pixel.
struct ImagePoint {
    double column = 0;
    double row = 0;

    friend bool operator==(const ImagePoint&, const ImagePoint&) = default;
};

/// A whole pixel of an image.
struct ImagePixel {
    std::int32_t column = 0;
    std::int32_t row = 0;

    friend bool operator==(const ImagePixel&, const ImagePixel&) = default;
};

} // namespace raincast
