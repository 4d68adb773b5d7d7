// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/product.h"

#include <string>

namespace raincast {

inline constexpr int kFrameWidth = 600;
inline constexpr int kFrameHeight = 550;

/// The pixel (a place between pixels) that the antenna stands on.
inline constexpr double kAntennaColumn = 299.5;
inline constexpr double kAntennaRow = 274.5;

/// How many pixels of a sharp picture stand in the place of one, across and down: 2 or 4; 1 is the
/// picture that handhelds show.
inline constexpr int kMostDetail = 4;

/// How the pictures of a site lie on the earth: degrees per pixel are the same in both directions,
/// 0.0071935 / cos(latitude) for the short range and twice that for the long one; a sharp picture
/// covers the same with smaller pixels. Whole columns and rows are the centres of pixels. The
/// antenna stands in the middle, between pixels.
class ImageGeometry {
public:
    /// The antenna's position in degrees.
    ImageGeometry(double latitude, double longitude, Range range, int detail = 1);

    [[nodiscard]] int detail() const { return m_detail; }
    [[nodiscard]] int width() const { return kFrameWidth * m_detail; }
    [[nodiscard]] int height() const { return kFrameHeight * m_detail; }
    [[nodiscard]] double degreesPerPixel() const { return m_step; }
    [[nodiscard]] double latitudeOfRow(double row) const;
    [[nodiscard]] double longitudeOfColumn(double column) const;
    [[nodiscard]] double rowOfLatitude(double latitude) const;
    [[nodiscard]] double columnOfLongitude(double longitude) const;

    /// The six lines of the world file that belongs to the pictures: step, 0, 0, -step, longitude
    /// and latitude of pixel (0, 0). At most 255 bytes.
    [[nodiscard]] std::string worldFile() const;

private:
    double m_latitude;
    double m_longitude;
    int m_detail;
    double m_step;
    double m_antennaColumn;
    double m_antennaRow;
};

} // namespace raincast
