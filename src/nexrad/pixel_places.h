// SPDX-License-Identifier: MIT
#pragma once

#include "nexrad/scan_placement.h"
#include "radar/catalogue/image_geometry.h"

#include <array>
#include <vector>

namespace raincast {

/// How far a quick place may lie from the exact one: in kilometres, and in tenths of a degree (the
/// full circle apart).
inline constexpr float kQuickKm = 6e-4F;
inline constexpr float kQuickTenths = 1e-3F;

/// What lies further from the antenna has no quick place: all its figures are NaN. No radar sees
/// as far.
inline constexpr float kFurthestQuickKm = 1200;

/// Rows of a sharp picture are placed in parts as long as those of the smallest one.
using PixelFigures = std::array<float, kFrameWidth>;

/// A row of pixels, or a part of one, quickly placed from the antenna: within kQuickTenths and
/// kQuickKm.
struct PolarRow {
    PixelFigures tenths; ///< of a degree, clockwise from north; NaN above it
    PixelFigures km;     ///< along the ground
};

/// The same on the plane that keeps directions and distances from the antenna: within kQuickKm.
struct PlaneRow {
    PixelFigures eastKm;
    PixelFigures northKm;
};

/// Where the centres of a picture's pixels lie as an antenna sees them.
///
/// The exact place (scan_placement.h) of each of 330,000 pixels takes longer than all else that is
/// done for a picture. The quick place takes a hundredth of that and says nearly always, too, which
/// cell of a scan the exact one lies in: it need be asked for only next to the edge of a cell.
class PixelPlaces {
public:
    /// The antenna's position in degrees.
    PixelPlaces(const ImageGeometry& image, double antennaLatitude, double antennaLongitude);

    /// As seenFrom() the pixel's centre.
    [[nodiscard]] PolarPlace exact(int row, int column) const;

    /// `part` counts a row's parts, of which there are as many as the picture's detail says.
    void place(int row, int part, PolarRow& places) const;
    void place(int row, int part, PlaneRow& places) const;

private:
    /// What a row's places have in common.
    struct Line;
    [[nodiscard]] Line lineOf(int row) const;

    float m_diameterKm;
    std::vector<Parallel> m_rows;
    std::vector<Angle> m_columns;
    std::vector<PixelFigures> m_eastSine; ///< of each part
    std::vector<PixelFigures> m_eastHaversine;
};

} // namespace raincast
