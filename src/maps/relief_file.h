// SPDX-License-Identifier: MIT
#pragma once

#include "maps/map_line.h"

#include <QString>

#include <vector>

namespace raincast {

/// Heights on a grid of evenly spaced parallels and meridians, in metres, below 0 under the sea.
class ReliefGrid {
public:
    ReliefGrid() = default;
    /// `heights` row by row from the south-west corner, rows * columns of them.
    ReliefGrid(
        GeoPosition southWest, double stepDegrees, std::size_t rows, std::size_t columns,
        std::vector<float> heights
    );

    [[nodiscard]] bool isEmpty() const { return m_heights.empty(); }

    /// The height at a position, smooth between the grid's points (a cubic through four by four of
    /// them); beyond the grid that of its edge. 0 for an empty grid.
    [[nodiscard]] double heightAt(GeoPosition position) const;

private:
    [[nodiscard]] double at(std::ptrdiff_t row, std::ptrdiff_t column) const;

    GeoPosition m_southWest;
    double m_step = 1;
    std::ptrdiff_t m_rows = 0;
    std::ptrdiff_t m_columns = 0;
    std::vector<float> m_heights;
};

/// The part of a relief file (ETOPO5 as netCDF) that covers a box, with a margin for smoothing.
/// Empty where the file is absent or of another form. Not for several threads at once.
[[nodiscard]] ReliefGrid readRelief(const QString& file, const GeoBox& box);

} // namespace raincast
