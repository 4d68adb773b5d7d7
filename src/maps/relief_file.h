// SPDX-License-Identifier: MIT
#pragma once

#include "maps/map_line.h"

#include <QString>

#include <array>
#include <cstddef>
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

private:
    friend class ReliefProfiles;

    [[nodiscard]] double at(std::ptrdiff_t row, std::ptrdiff_t column) const;

    GeoPosition m_southWest;
    double m_step = 1;
    std::ptrdiff_t m_rows = 0;
    std::ptrdiff_t m_columns = 0;
    std::vector<float> m_heights;
};

/// Heights along parallels, at the same meridians each time. Smooth between the grid's points (a
/// cubic through four by four of them); beyond the grid those of its edge, and 0 for an empty grid.
/// Parallels that follow each other closely share most of the work.
class ReliefProfiles {
public:
    /// The grid is borrowed; longitudes in degrees.
    ReliefProfiles(const ReliefGrid& grid, const std::vector<double>& longitudes);

    /// The heights at all longitudes; `heights` gets as many.
    void at(double latitude, std::vector<double>& heights);

private:
    /// Where a longitude lies between the grid's columns.
    struct Place {
        std::ptrdiff_t column;
        double fraction;
    };
    /// A row of the grid, smooth along its parallel.
    struct Line {
        std::ptrdiff_t row = kNoRow;
        std::vector<double> heights{};
    };
    static constexpr std::ptrdiff_t kNoRow = -1000;

    [[nodiscard]] const std::vector<double>& lineOf(std::ptrdiff_t row);

    const ReliefGrid& m_grid;
    std::vector<Place> m_places;
    std::array<Line, 4> m_lines; ///< the latest, each row's at its number's remainder
};

/// The part of a relief file (ETOPO5 as netCDF) that covers a box, with a margin for smoothing.
/// Empty where the file is absent or of another form. Not for several threads at once.
[[nodiscard]] ReliefGrid readRelief(const QString& file, const GeoBox& box);

} // namespace raincast
