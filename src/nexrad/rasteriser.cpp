// SPDX-License-Identifier: MIT
#include "nexrad/rasteriser.h"

#include "nexrad/scan_placement.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

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

void rasterisePolar(
    const PolarScan& scan, const std::vector<PolarPlace>& places, IndexedPicture& picture
) {
    const auto rows = rowsByAzimuth(scan);
    const double endKm = scan.firstKm + scan.cellKm * scan.columns;
    std::transform(places.begin(), places.end(), picture.begin(), [&](const PolarPlace& place) {
        const int row = rows[static_cast<std::size_t>(place.azimuthDegrees * 10.0)];
        if (row == kNoRow || place.km < scan.firstKm || place.km >= endKm) {
            return std::uint8_t{0};
        }
        const int column = static_cast<int>((place.km - scan.firstKm) / scan.cellKm);
        return scan.levels[scan.cell(row, std::min(column, scan.columns - 1))];
    });
}

/// The cells of a raster lie on the plane that keeps directions and distances from the antenna.
void rasteriseRaster(
    const PolarScan& scan, const std::vector<PolarPlace>& places, IndexedPicture& picture
) {
    std::transform(places.begin(), places.end(), picture.begin(), [&](const PolarPlace& place) {
        const double azimuth = place.azimuthDegrees * kDegree;
        const double cells = place.km / scan.cellKm;
        const double column = std::floor(scan.columns / 2.0 + cells * std::sin(azimuth));
        const double row = std::floor(scan.rows / 2.0 - cells * std::cos(azimuth));
        if (column < 0 || column >= scan.columns || row < 0 || row >= scan.rows) {
            return std::uint8_t{0};
        }
        return scan.levels[scan.cell(static_cast<int>(row), static_cast<int>(column))];
    });
}

/// The places of the pictures that this thread drew last. They cost more than all else, and a
/// site's products, of two ranges, are usually drawn one after the other.
const std::vector<PolarPlace>& placesFor(const PolarScan& scan, const ImageGeometry& image) {
    struct Drawn {
        std::array<double, 5> key{};
        std::vector<PolarPlace> places;
    };
    thread_local Drawn last;
    thread_local Drawn before;
    const std::array key = {
        scan.latitude, scan.longitude, image.degreesPerPixel(), image.latitudeOfRow(0),
        image.longitudeOfColumn(0)};
    const auto isDrawn = [&] { return !last.places.empty() && last.key == key; };
    if (!isDrawn()) {
        std::swap(last, before);
    }
    if (!isDrawn()) {
        last = {key, placePixels(image, scan.latitude, scan.longitude)};
    }
    return last.places;
}

} // namespace

IndexedPicture rasterise(const PolarScan& scan, const ImageGeometry& image) {
    IndexedPicture picture(std::size_t{kFrameWidth} * kFrameHeight, 0);
    if (!fits(scan)) {
        return picture;
    }
    const auto& places = placesFor(scan, image);
    if (scan.layout == CellLayout::polar) {
        rasterisePolar(scan, places, picture);
    } else {
        rasteriseRaster(scan, places, picture);
    }
    return picture;
}

} // namespace raincast
