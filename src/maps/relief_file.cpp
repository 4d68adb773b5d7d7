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

double ReliefGrid::heightAt(GeoPosition position) const {
    if (isEmpty()) {
        return 0;
    }
    const double y = (position.latitude - m_southWest.latitude) / m_step;
    const double x = (position.longitude - m_southWest.longitude) / m_step;
    const double row = std::clamp(std::floor(y), -2.0, double(m_rows));
    const double column = std::clamp(std::floor(x), -2.0, double(m_columns));
    const double fractionX = std::clamp(x - column, 0.0, 1.0);
    double across[4];
    for (int i = 0; i < 4; ++i) {
        const auto r = static_cast<std::ptrdiff_t>(row) + i - 1;
        const auto c = static_cast<std::ptrdiff_t>(column);
        across[i] = cubic(at(r, c - 1), at(r, c), at(r, c + 1), at(r, c + 2), fractionX);
    }
    return cubic(across[0], across[1], across[2], across[3], std::clamp(y - row, 0.0, 1.0));
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
    if (heights.empty() || !(step > 0)) {
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
