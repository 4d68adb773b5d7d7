// SPDX-License-Identifier: MIT
#pragma once

#include "geo/cubic_polynomial.h"
#include "geo/geo_position.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>

namespace raincast {

/// Places one image on the earth: converts between positions and the image's pixels, both ways.
/// Read from the image's world file. Conversions of a reference that is not valid give numbers
/// without meaning, never undefined behaviour; so do positions or points that are not finite.
class GeoReference {
public:
    /// A whole pixel, and whether the call succeeded.
    struct Placed {
        ImagePixel pixel;
        bool ok = false;

        friend bool operator==(const Placed&, const Placed&) = default;
    };

    /// The bytes at the start of a world file that count.
    static constexpr std::size_t kWorldFileBytes = 255;

    /// Whether a text, of which the first kWorldFileBytes count, is a world file.
    [[nodiscard]] static bool isWorldFile(std::string_view text);

    /// Reads a world file for an image of width x height pixels and returns valid().
    ///
    /// The file is text of which the first kWorldFileBytes count: six decimal numbers between any
    /// white space, W1 to W6; what follows them is ignored. Pixel (column x, row y) lies at
    ///   longitude = W5 + W1 x + W2 y,  latitude = W6 + W3 x + W4 y.
    /// Numbers have a point for the decimals whatever the process's locale, an optional sign (plus
    /// too) and an optional exponent; hexadecimal numbers, infinities, "nan" and numbers beyond the
    /// range of a double do not count as numbers.
    ///
    /// Without a regular file, or with fewer than six numbers, the reference becomes not valid and
    /// its coefficients stay as they were. Six numbers that describe no invertible map are taken
    /// as they are: their pixels are infinite or not a number.
    bool loadWorldFile(const std::filesystem::path& file, std::int32_t width, std::int32_t height);

    /// Whether the last load read a world file.
    [[nodiscard]] bool valid() const { return m_valid; }
    /// Makes the reference not valid until the next load; its coefficients stay.
    void invalidate() { m_valid = false; }

    /// The image's size in pixels, as given to the last load that succeeded.
    [[nodiscard]] std::int32_t width() const { return m_width; }
    [[nodiscard]] std::int32_t height() const { return m_height; }
    /// Longitude of the image's centre pixel, which decides the turn of the globe that is meant.
    [[nodiscard]] double referenceLongitude() const { return m_referenceLongitude; }

    /// The position of a point of the image, or of the plane that the image lies in.
    [[nodiscard]] GeoPosition pixelToGeo(ImagePoint point) const;

    /// The point of a position. A longitude more than 180 degrees from the image's centre is taken
    /// one turn of the globe nearer.
    [[nodiscard]] ImagePoint geoToPixel(GeoPosition position) const;

    /// The pixel of a position, truncated towards zero, and whether it is one of the image's. Up
    /// to one pixel left of or above the image counts as inside, as truncation has it. A pixel
    /// beyond 32 bits is the nearest that they hold; one that is not a number is the smallest.
    [[nodiscard]] Placed geoToPixelInside(GeoPosition position) const;

    /// The pixel of a position, truncated towards zero, as long as it is within 2e9 pixels of the
    /// image's origin; (-1, -1) and false otherwise.
    [[nodiscard]] Placed geoToPixelForDrawing(GeoPosition position) const;

private:
    bool m_valid = false;
    // Column and row as functions of latitude and longitude.
    CubicPolynomial m_column;
    CubicPolynomial m_row;
    // Latitude and longitude as functions of column and row.
    CubicPolynomial m_latitude;
    CubicPolynomial m_longitude;
    double m_referenceLongitude = 0;
    std::int32_t m_width = 0;
    std::int32_t m_height = 0;
};

} // namespace raincast
