// SPDX-License-Identifier: MIT
#pragma once

#include "nexrad/pixel_run.h"
#include "nexrad/scan_placement.h"
#include "radar/catalogue/image_geometry.h"

#include <cstddef>
#include <vector>

namespace raincast {

/// How far a quick place may lie from the exact one: in kilometres, and in tenths of a degree (the
/// full circle apart).
inline constexpr float kQuickKm = 6e-4F;
inline constexpr float kQuickTenths = 1e-3F;

/// What lies further from the antenna has no quick place: all its figures are NaN. No radar sees
/// as far.
inline constexpr float kFurthestQuickKm = 1200;

/// A run of pixels, quickly placed from the antenna: within kQuickTenths and kQuickKm.
struct PolarRun {
    PixelRun<float> tenths; ///< of a degree, clockwise from north; NaN above it
    PixelRun<float> km;     ///< along the ground
};

/// The same on the plane that keeps directions and distances from the antenna: within kQuickKm.
struct PlaneRun {
    PixelRun<float> eastKm;
    PixelRun<float> northKm;
};

/// Where the centres of a picture's pixels lie as an antenna sees them.
///
/// The exact place (scan_placement.h) of each of 330,000 pixels takes longer than all else that is
/// done for a picture. The quick place takes a hundredth of that and says nearly always, too, which
/// cell of a scan the exact one lies in: it need be asked for only next to the edge of a cell.
class PixelPlaces {
public:
    /// The antenna's position in degrees. Pixels beyond `reachKm` are of no interest.
    PixelPlaces(
        const ImageGeometry& image, double antennaLatitude, double antennaLongitude, double reachKm
    );

    /// The number of runs in a row.
    [[nodiscard]] std::size_t runs() const { return m_eastSine.size(); }

    /// As seenFrom() the pixel's centre.
    [[nodiscard]] PolarPlace exact(int row, int column) const;

    /// Whether a pixel of a run may be of interest. Is wrong for those only that lie a little
    /// beyond.
    [[nodiscard]] bool isInReach(int row, std::size_t run) const;

    void place(int row, std::size_t run, PolarRun& places) const;
    void place(int row, std::size_t run, PlaneRun& places) const;

private:
    /// What a row's places have in common.
    struct Line;
    [[nodiscard]] Line lineOf(int row) const;

    float m_diameterKm;
    float m_reach; ///< the haversine of reachKm and a little more
    std::vector<Parallel> m_rows;
    std::vector<Angle> m_columns;
    std::vector<PixelRun<float>> m_eastSine; ///< of each run
    std::vector<PixelRun<float>> m_eastHaversine;
};

} // namespace raincast
