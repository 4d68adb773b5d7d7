// SPDX-License-Identifier: MIT
#include "nexrad/rasteriser.h"

#include "nexrad/cell_axis.h"
#include "nexrad/pixel_places.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace raincast {

namespace {

constexpr int kTenthsOfCircle = 3600;
constexpr int kNoRow = -1;
constexpr double kDegree = 3.14159265358979323846 / 180;

bool fits(const PolarScan& scan) {
    const auto rows = static_cast<std::size_t>(std::max(scan.rows, 0));
    const auto columns = static_cast<std::size_t>(std::max(scan.columns, 0));
    const bool radialsFit = scan.layout == CellLayout::raster || scan.radials.size() == rows;
    return rows > 0 && columns > 0 && scan.cells.size() == rows * columns && scan.cellKm > 0 &&
           radialsFit;
}

/// The row of cells that lies in each tenth of a degree.
std::array<int, kTenthsOfCircle> rowsByAzimuth(const PolarScan& scan) {
    std::array<int, kTenthsOfCircle> rows{};
    rows.fill(kNoRow);
    for (int row = 0; row < scan.rows; ++row) {
        const RadialSpan& span = scan.radials[static_cast<std::size_t>(row)];
        const int width = std::min(span.widthTenths, kTenthsOfCircle);
        for (int i = 0; i < width; ++i) {
            const int tenth = (span.startTenths + i) % kTenthsOfCircle;
            rows[static_cast<std::size_t>(std::max(tenth, 0))] = row;
        }
    }
    return rows;
}

std::uint8_t polarLevel(const PolarScan& scan, int row, int column) {
    return row == kNoRow ? std::uint8_t{0} : scan.levels[scan.cell(row, column)];
}

void rasterisePolar(const PolarScan& scan, const PixelPlaces& places, IndexedPicture& picture) {
    const auto rows = rowsByAzimuth(scan);
    const double endKm = scan.firstKm + scan.cellKm * scan.columns;
    const auto exactLevel = [&](const PolarPlace& place) {
        if (place.km < scan.firstKm || place.km >= endKm) {
            return std::uint8_t{0};
        }
        const int column = static_cast<int>((place.km - scan.firstKm) / scan.cellKm);
        const auto tenth = static_cast<std::size_t>(place.azimuthDegrees * 10.0);
        return polarLevel(scan, rows[tenth], std::min(column, scan.columns - 1));
    };
    const CellAxis around(kTenthsOfCircle, 0, 1, kQuickTenths);
    const CellAxis outwards(scan.columns, scan.firstKm, scan.cellKm, kQuickKm);
    PolarRow quick;
    CellAxis::Cells tenths;
    CellAxis::Cells columns;
    auto pixel = picture.begin();
    for (int y = 0; y < kFrameHeight; ++y) {
        places.place(y, quick);
        around.find(quick.tenths, tenths);
        outwards.find(quick.km, columns);
        for (std::size_t x = 0; x < kFrameWidth; ++x, ++pixel) {
            if (columns[x] >= 0 && tenths[x] >= 0) {
                *pixel = polarLevel(scan, rows[static_cast<std::size_t>(tenths[x])], columns[x]);
            } else if (columns[x] != CellAxis::kOutside) {
                *pixel = exactLevel(places.exact(y, static_cast<int>(x)));
            }
        }
    }
}

std::uint8_t rasterLevel(const PolarScan& scan, int row, int column) {
    return scan.levels[scan.cell(row, column)];
}

/// The cells of a raster lie on the plane that keeps directions and distances from the antenna.
void rasteriseRaster(const PolarScan& scan, const PixelPlaces& places, IndexedPicture& picture) {
    const auto exactLevel = [&](const PolarPlace& place) {
        const double azimuth = place.azimuthDegrees * kDegree;
        const double cells = place.km / scan.cellKm;
        const double column = std::floor(scan.columns / 2.0 + cells * std::sin(azimuth));
        const double row = std::floor(scan.rows / 2.0 - cells * std::cos(azimuth));
        if (column < 0 || column >= scan.columns || row < 0 || row >= scan.rows) {
            return std::uint8_t{0};
        }
        return rasterLevel(scan, static_cast<int>(row), static_cast<int>(column));
    };
    const CellAxis eastwards(
        scan.columns, scan.columns / -2.0 * scan.cellKm, scan.cellKm, kQuickKm
    );
    const CellAxis southwards(scan.rows, scan.rows / 2.0 * scan.cellKm, -scan.cellKm, kQuickKm);
    PlaneRow quick;
    CellAxis::Cells columns;
    CellAxis::Cells rows;
    auto pixel = picture.begin();
    for (int y = 0; y < kFrameHeight; ++y) {
        places.place(y, quick);
        eastwards.find(quick.eastKm, columns);
        southwards.find(quick.northKm, rows);
        for (std::size_t x = 0; x < kFrameWidth; ++x, ++pixel) {
            if (columns[x] >= 0 && rows[x] >= 0) {
                *pixel = rasterLevel(scan, rows[x], columns[x]);
            } else if (columns[x] != CellAxis::kOutside && rows[x] != CellAxis::kOutside) {
                *pixel = exactLevel(places.exact(y, static_cast<int>(x)));
            }
        }
    }
}

} // namespace

IndexedPicture rasterise(const PolarScan& scan, const ImageGeometry& image) {
    IndexedPicture picture(std::size_t{kFrameWidth} * kFrameHeight, 0);
    if (!fits(scan)) {
        return picture;
    }
    const PixelPlaces places(image, scan.latitude, scan.longitude);
    if (scan.layout == CellLayout::polar) {
        rasterisePolar(scan, places, picture);
    } else {
        rasteriseRaster(scan, places, picture);
    }
    return picture;
}

} // namespace raincast
