// SPDX-License-Identifier: MIT
#include "nexrad/rasteriser.h"

#include "nexrad/cell_axis.h"
#include "nexrad/pixel_places.h"
#include "nexrad/small_cells.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace raincast {

namespace {

constexpr int kTenthsOfCircle = 3600;
constexpr double kDegree = 3.14159265358979323846 / 180;

bool fits(const PolarScan& scan) {
    const auto rows = static_cast<std::size_t>(std::max(scan.rows, 0));
    const auto columns = static_cast<std::size_t>(std::max(scan.columns, 0));
    const bool radialsFit = scan.layout == CellLayout::raster || scan.radials.size() == rows;
    return rows > 0 && columns > 0 && scan.cells.size() == rows * columns && scan.cellKm > 0 &&
           radialsFit;
}

/// The row of cells that lies in each tenth of a degree, or none.
using RowsByAzimuth = std::array<const std::uint8_t*, kTenthsOfCircle>;

RowsByAzimuth rowsByAzimuth(const PolarScan& scan) {
    RowsByAzimuth rows{};
    for (int row = 0; row < scan.rows; ++row) {
        const RadialSpan& span = scan.radials[static_cast<std::size_t>(row)];
        const int width = std::min(span.widthTenths, kTenthsOfCircle);
        for (int i = 0; i < width; ++i) {
            const int tenth = (span.startTenths + i) % kTenthsOfCircle;
            rows[static_cast<std::size_t>(std::max(tenth, 0))] =
                scan.cells.data() + std::ptrdiff_t{row} * scan.columns;
        }
    }
    return rows;
}

/// Finds the cell of each pixel quickly along two axes, and asks for its exact place where that is
/// not sure. The picture is empty.
template<typename Run, typename LevelOf, typename ExactLevel>
void fill(
    IndexedPicture& picture, const PixelPlaces& places, const CellAxis& rowAxis,
    PixelRun<float> Run::*alongRows, const CellAxis& columnAxis, PixelRun<float> Run::*alongColumns,
    LevelOf levelOf, ExactLevel exactLevel
) {
    Run quick;
    CellAxis::Cells rows;
    CellAxis::Cells columns;
    for (int y = 0; y < picture.height(); ++y) {
        for (std::size_t run = 0; run < places.runs(); ++run) {
            if (!places.isInReach(y, run)) {
                continue;
            }
            places.place(y, run, quick);
            rowAxis.find(quick.*alongRows, rows);
            columnAxis.find(quick.*alongColumns, columns);
            std::uint8_t* const pixels = picture.row(y) + run * kRunLength;
            for (std::size_t x = 0; x < kRunLength; ++x) {
                if (rows[x] >= 0 && columns[x] >= 0) {
                    pixels[x] = levelOf(rows[x], columns[x]);
                } else if (rows[x] != CellAxis::kOutside && columns[x] != CellAxis::kOutside) {
                    pixels[x] = exactLevel(places.exact(y, static_cast<int>(run * kRunLength + x)));
                }
            }
        }
    }
}

void rasterisePolar(const PolarScan& scan, const ImageGeometry& image, IndexedPicture& picture) {
    const RowsByAzimuth rows = rowsByAzimuth(scan);
    const double endKm = scan.firstKm + scan.cellKm * scan.columns;
    const PixelPlaces places(image, scan.latitude, scan.longitude, endKm);
    const auto levelOf = [&](int tenth, int column) {
        const std::uint8_t* const row = rows[static_cast<std::size_t>(tenth)];
        return row == nullptr ? std::uint8_t{0} : scan.levels[row[column]];
    };
    const auto exactLevel = [&](const PolarPlace& place) {
        if (place.km < scan.firstKm || place.km >= endKm) {
            return std::uint8_t{0};
        }
        const int column = static_cast<int>((place.km - scan.firstKm) / scan.cellKm);
        const int tenth = static_cast<int>(place.azimuthDegrees * 10.0);
        return levelOf(tenth, std::min(column, scan.columns - 1));
    };
    const CellAxis around(kTenthsOfCircle, 0, 1, kQuickTenths);
    const CellAxis outwards(scan.columns, scan.firstKm, scan.cellKm, kQuickKm);
    fill<PolarRun>(
        picture, places, around, &PolarRun::tenths, outwards, &PolarRun::km, levelOf, exactLevel
    );
}

std::uint8_t rasterLevel(const PolarScan& scan, int row, int column) {
    return scan.levels[scan.cell(row, column)];
}

/// The cells of a raster lie on the plane that keeps directions and distances from the antenna.
void rasteriseRaster(const PolarScan& scan, const ImageGeometry& image, IndexedPicture& picture) {
    const double cornerKm = std::hypot(scan.columns, scan.rows) / 2 * scan.cellKm;
    const PixelPlaces places(image, scan.latitude, scan.longitude, cornerKm);
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
    const auto levelOf = [&](int row, int column) { return rasterLevel(scan, row, column); };
    fill<PlaneRun>(
        picture, places, southwards, &PlaneRun::northKm, eastwards, &PlaneRun::eastKm, levelOf,
        exactLevel
    );
}

} // namespace

IndexedPicture rasterise(const PolarScan& scan, const ImageGeometry& image) {
    IndexedPicture picture(image.detail());
    if (!fits(scan)) {
        return picture;
    }
    if (scan.layout == CellLayout::polar) {
        rasterisePolar(scan, image, picture);
        if (image.detail() > 1) {
            showSmallCells(scan, image, picture);
        }
    } else {
        rasteriseRaster(scan, image, picture);
    }
    return picture;
}

} // namespace raincast
