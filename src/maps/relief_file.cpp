// SPDX-License-Identifier: MIT
#include "maps/relief_file.h"

#include "maps/netcdf_file.h"

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

// Points beyond the box on each side that smoothing looks at.
constexpr int kMargin = 3;

/// A cubic through b (t = 0) and c (t = 1) with the slopes of their neighbours (Catmull and Rom).
double cubic(double a, double b, double c, double d, double t) {
    return b + t * (c - a + t * (2 * a - 5 * b + 4 * c - d + t * (3 * (b - c) + d - a))) / 2;
}

/// The indices of an axis that cover an interval, as first index and count.
struct Span {
    std::size_t first = 0;
    std::size_t count = 0;
};

Span spanOf(const std::vector<double>& axis, double from, double to) {
    const auto begin = std::lower_bound(axis.begin(), axis.end(), from) - axis.begin() - kMargin;
    const auto end = std::upper_bound(axis.begin(), axis.end(), to) - axis.begin() + kMargin;
    const auto size = static_cast<std::ptrdiff_t>(axis.size());
    const auto first = std::clamp<std::ptrdiff_t>(begin, 0, size);
    return {
        static_cast<std::size_t>(first),
        static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(end, first, size) - first)};
}

} // namespace

ReliefGrid::ReliefGrid(
    GeoPosition southWest, double stepDegrees, std::size_t rows, std::size_t columns,
    std::vector<float> heights
)
    : m_southWest(southWest), m_step(stepDegrees), m_rows(static_cast<std::ptrdiff_t>(rows)),
      m_columns(static_cast<std::ptrdiff_t>(columns)), m_heights(std::move(heights)) {
    // Gaps are sea level.
    for (float& height : m_heights) {
        height = std::abs(height) < 12'000 ? height : 0;
    }
}

double ReliefGrid::at(std::ptrdiff_t row, std::ptrdiff_t column) const {
    const auto y = std::clamp<std::ptrdiff_t>(row, 0, m_rows - 1);
    const auto x = std::clamp<std::ptrdiff_t>(column, 0, m_columns - 1);
    return double(m_heights[static_cast<std::size_t>(y * m_columns + x)]);
}

ReliefProfiles::ReliefProfiles(const ReliefGrid& grid, const std::vector<double>& longitudes)
    : m_grid(grid) {
    m_places.reserve(longitudes.size());
    for (const double longitude : longitudes) {
        const double x = (longitude - grid.m_southWest.longitude) / grid.m_step;
        const double column = std::clamp(std::floor(x), -2.0, double(grid.m_columns));
        m_places.push_back({static_cast<std::ptrdiff_t>(column), std::clamp(x - column, 0.0, 1.0)});
    }
}

void ReliefProfiles::at(double latitude, std::vector<double>& heights) {
    heights.assign(m_places.size(), 0);
    if (m_grid.isEmpty()) {
        return;
    }
    const double y = (latitude - m_grid.m_southWest.latitude) / m_grid.m_step;
    const double row = std::clamp(std::floor(y), -2.0, double(m_grid.m_rows));
    const double fraction = std::clamp(y - row, 0.0, 1.0);
    const auto r = static_cast<std::ptrdiff_t>(row);
    const auto& a = lineOf(r - 1);
    const auto& b = lineOf(r);
    const auto& c = lineOf(r + 1);
    const auto& d = lineOf(r + 2);
    for (std::size_t i = 0; i < heights.size(); ++i) {
        heights[i] = cubic(a[i], b[i], c[i], d[i], fraction);
    }
}

const std::vector<double>& ReliefProfiles::lineOf(std::ptrdiff_t row) {
    constexpr auto kLines = static_cast<std::ptrdiff_t>(std::tuple_size_v<decltype(m_lines)>);
    Line& line = m_lines[static_cast<std::size_t>((row % kLines + kLines) % kLines)];
    if (line.row != row) {
        line.row = row;
        line.heights.clear();
        for (const auto& [column, fraction] : m_places) {
            line.heights.push_back(cubic(
                m_grid.at(row, column - 1), m_grid.at(row, column), m_grid.at(row, column + 1),
                m_grid.at(row, column + 2), fraction
            ));
        }
    }
    return line.heights;
}

ReliefGrid readRelief(const QString& file, const GeoBox& box) {
    const NetcdfFile relief(file);
    if (!relief.isOpen()) {
        return {};
    }
    const auto longitudes = relief.doubles("ETOPO05_X");
    const auto latitudes = relief.doubles("ETOPO05_Y");
    // The file counts longitudes from 0 to 360.
    const double turn = box.west < 0 ? 360 : 0;
    const Span columns = spanOf(longitudes, box.west + turn, box.east + turn);
    const Span rows = spanOf(latitudes, box.south, box.north);
    if (columns.count < 2 || rows.count < 2) {
        return {};
    }
    auto heights = relief.floats("ROSE", rows.first, rows.count, columns.first, columns.count);
    const double step = longitudes[columns.first + 1] - longitudes[columns.first];
    // No other of the axes' numbers is used.
    const bool isPlaced = step > 0 && std::isfinite(step) && std::isfinite(latitudes[rows.first]) &&
                          std::isfinite(longitudes[columns.first]);
    if (heights.empty() || !isPlaced) {
        return {};
    }
    return {
        {latitudes[rows.first], longitudes[columns.first] - turn},
        step,
        rows.count,
        columns.count,
        std::move(heights)};
}

} // namespace raincast
