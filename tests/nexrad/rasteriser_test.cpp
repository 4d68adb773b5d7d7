// SPDX-License-Identifier: MIT
#include "nexrad/rasteriser.h"
#include "nexrad/scan_placement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace raincast {
namespace {

const ImageGeometry kImage(35, -97, Range::shortRange);

PolarScan scanOf(int rows, int columns, double cellKm) {
    PolarScan scan;
    scan.latitude = 35;
    scan.longitude = -97;
    scan.rows = rows;
    scan.columns = columns;
    scan.cellKm = cellKm;
    scan.cells.resize(static_cast<std::size_t>(rows * columns));
    std::iota(scan.levels.begin(), scan.levels.end(), std::uint8_t{0});
    return scan;
}

/// Quarters of the circle, two cells of 50 km each: levels 1, 2 in the first, 3, 4 in the next …
PolarScan quarters() {
    PolarScan scan = scanOf(4, 2, 50);
    std::iota(scan.cells.begin(), scan.cells.end(), std::uint8_t{1});
    for (int i = 0; i < 4; ++i) {
        scan.radials.push_back({i * 900, 900});
    }
    return scan;
}

/// The pixel some kilometres east and north of the antenna (0.8 km a column, 0.977 km a row).
int at(const IndexedPicture& picture, double eastKm, double northKm) {
    const int column = static_cast<int>(299.5 + eastKm / .8 + .5);
    const int row = static_cast<int>(274.5 - northKm / .974 + .5);
    return picture.row(row)[column];
}

TEST(RasteriserTest, APixelShowsTheCellUnderItsCentre) {
    const IndexedPicture picture = rasterise(quarters(), kImage);
    EXPECT_EQ(at(picture, 20, 20), 1);
    EXPECT_EQ(at(picture, 50, 50), 2);
    EXPECT_EQ(at(picture, 20, -20), 3);
    EXPECT_EQ(at(picture, 50, -50), 4);
    EXPECT_EQ(at(picture, -20, -20), 5);
    EXPECT_EQ(at(picture, -50, -50), 6);
    EXPECT_EQ(at(picture, -20, 20), 7);
    EXPECT_EQ(at(picture, -50, 50), 8);
    EXPECT_EQ(at(picture, 90, 90), 0);
}

TEST(RasteriserTest, BoundariesLieWithinAPixelOfTheirPlace) {
    const IndexedPicture picture = rasterise(quarters(), kImage);
    EXPECT_EQ(at(picture, 49, 1), 1);
    EXPECT_EQ(at(picture, 51, 1), 2);
    EXPECT_EQ(at(picture, 99, 1), 2);
    EXPECT_EQ(at(picture, 101, 1), 0);
    EXPECT_EQ(at(picture, .5, 70), 2);
    EXPECT_EQ(at(picture, -.5, 70), 8);
}

TEST(RasteriserTest, CellsMayBeginBeyondTheAntenna) {
    PolarScan scan = quarters();
    scan.firstKm = 30;
    const IndexedPicture picture = rasterise(scan, kImage);
    EXPECT_EQ(at(picture, 10, 10), 0);
    EXPECT_EQ(at(picture, 40, 40), 1);
    EXPECT_EQ(at(picture, 80, 80), 2);
}

TEST(RasteriserTest, OfOverlappingRadialsTheLaterOneShowsAndGapsStayEmpty) {
    PolarScan scan = quarters();
    scan.radials = {{3500, 200}, {100, 800}, {1800, 900}, {3550, 50}};
    const IndexedPicture picture = rasterise(scan, kImage);
    EXPECT_EQ(at(picture, 3, 45), 1);    // 3.8 degrees: the first, across north
    EXPECT_EQ(at(picture, -2, 45), 7);   // 357.5: the last
    EXPECT_EQ(at(picture, -6.5, 45), 1); // 351.8: the first before the last begins
    EXPECT_EQ(at(picture, 20, -20), 0);  // nobody's
    EXPECT_EQ(at(picture, -20, 20), 0);
}

TEST(RasteriserTest, ARasterRunsFromTheNorthwest) {
    PolarScan scan = scanOf(4, 4, 25);
    scan.layout = CellLayout::raster;
    std::iota(scan.cells.begin(), scan.cells.end(), std::uint8_t{1});
    const IndexedPicture picture = rasterise(scan, kImage);
    EXPECT_EQ(at(picture, -40, 40), 1);
    EXPECT_EQ(at(picture, -10, 40), 2);
    EXPECT_EQ(at(picture, 40, 40), 4);
    EXPECT_EQ(at(picture, -40, 10), 5);
    EXPECT_EQ(at(picture, 10, -10), 11);
    EXPECT_EQ(at(picture, 40, -40), 16);
    EXPECT_EQ(at(picture, 52, 0), 0);
    EXPECT_EQ(at(picture, 0, -52), 0);
}

TEST(RasteriserTest, ColoursComeFromTheScansTable) {
    PolarScan scan = quarters();
    scan.levels.fill(0);
    scan.levels[1] = 9;
    const IndexedPicture picture = rasterise(scan, kImage);
    EXPECT_EQ(at(picture, 20, 20), 9);
    EXPECT_EQ(at(picture, 20, -20), 0);
}

TEST(RasteriserTest, TablesThatDoNotFitShowNothing) {
    std::vector<PolarScan> scans(7, quarters());
    scans[0].radials.pop_back();
    scans[1].cells.pop_back();
    scans[2].rows = -4;
    scans[3].columns = 0;
    scans[4].cellKm = 0;
    scans[5] = PolarScan();
    scans[6].radials.clear();
    const IndexedPicture nothing;
    for (std::size_t i = 0; i < scans.size(); ++i) {
        EXPECT_EQ(rasterise(scans[i], kImage), nothing) << i;
    }
}

/// Cells in no order: a wrong cell is a wrong level, nearly always.
void fillAtRandom(PolarScan& scan) {
    std::uint32_t state = 1;
    for (std::uint8_t& cell : scan.cells) {
        state = state * 1664525 + 1013904223;
        cell = static_cast<std::uint8_t>(state >> 24);
    }
}

PolarScan radialsOf(int radials, int bins, double cellKm) {
    PolarScan scan = scanOf(radials, bins, cellKm);
    for (int i = 0; i < radials; ++i) {
        scan.radials.push_back({i * 3600 / radials, 3600 / radials});
    }
    fillAtRandom(scan);
    return scan;
}

PolarScan rasterOf(int size, double cellKm) {
    PolarScan scan = scanOf(size, size, cellKm);
    scan.layout = CellLayout::raster;
    fillAtRandom(scan);
    return scan;
}

/// The level under a place by the rule alone, without any haste.
std::uint8_t levelAt(const PolarScan& scan, const PolarPlace& place) {
    if (scan.layout == CellLayout::raster) {
        const double azimuth = place.azimuthDegrees * 3.14159265358979323846 / 180;
        const double cells = place.km / scan.cellKm;
        const auto column = int(std::floor(scan.columns / 2.0 + cells * std::sin(azimuth)));
        const auto row = int(std::floor(scan.rows / 2.0 - cells * std::cos(azimuth)));
        const bool inside = column >= 0 && column < scan.columns && row >= 0 && row < scan.rows;
        return inside ? scan.levels[scan.cell(row, column)] : std::uint8_t{0};
    }
    const double cells = (place.km - scan.firstKm) / scan.cellKm;
    if (cells < 0 || cells >= scan.columns) {
        return 0;
    }
    const int width = 3600 / scan.rows;
    const int row = int(place.azimuthDegrees * 10.0) / width;
    return scan.levels[scan.cell(row, int(cells))];
}

struct DrawnAt {
    double latitude;
    double longitude;
};

/// Asks for each pixel by itself where its centre lies.
std::ptrdiff_t wrongPixels(PolarScan scan, const DrawnAt& antenna, Range range) {
    // The layers' antenna is often some hundred metres beside the product's.
    const ImageGeometry image(antenna.latitude + .01, antenna.longitude - .01, range);
    scan.latitude = antenna.latitude;
    scan.longitude = antenna.longitude;
    const IndexedPicture picture = rasterise(scan, image);
    std::ptrdiff_t wrong = 0;
    for (int row = 0; row < kFrameHeight; ++row) {
        for (int column = 0; column < kFrameWidth; ++column) {
            const PolarPlace place = seenFrom(
                antenna.latitude, antenna.longitude, image.latitudeOfRow(row),
                image.longitudeOfColumn(column)
            );
            wrong += picture.row(row)[column] != levelAt(scan, place) ? 1 : 0;
        }
    }
    return wrong;
}

// The tropics, the plains, Alaska, south of the equator, the date line, and where no radar stands.
constexpr DrawnAt kAntennas[] = {{13.45, 144.81},  {35.333, -97.278}, {65.035, -147.501},
                                 {-14.33, -170.7}, {52, 179.99},      {88, 0}};

TEST(RasteriserTest, EveryPixelShowsTheCellOfItsExactPlace) {
    for (const DrawnAt& antenna : kAntennas) {
        EXPECT_EQ(wrongPixels(radialsOf(720, 1840, .25), antenna, Range::shortRange), 0)
            << antenna.latitude;
        EXPECT_EQ(wrongPixels(rasterOf(464, 1), antenna, Range::longRange), 0) << antenna.latitude;
    }
}

TEST(RasteriserTest, CellsOfAnySizeAndBeginningAreExact) {
    PolarScan beyond = radialsOf(360, 460, .99);
    beyond.firstKm = 17.3;
    EXPECT_EQ(wrongPixels(beyond, kAntennas[1], Range::longRange), 0);
    beyond.firstKm = -40;
    EXPECT_EQ(wrongPixels(beyond, kAntennas[1], Range::shortRange), 0);
    for (const double cellKm : {1e-9, 1e-4, .02, 5000.}) {
        EXPECT_EQ(wrongPixels(radialsOf(360, 2000, cellKm), kAntennas[1], Range::shortRange), 0)
            << cellKm;
        EXPECT_EQ(wrongPixels(rasterOf(1000, cellKm), kAntennas[1], Range::shortRange), 0)
            << cellKm;
    }
}

TEST(RasteriserTest, ThePictureDoesNotDependOnTheOneBefore) {
    const IndexedPicture first = rasterise(quarters(), kImage);
    const IndexedPicture other = rasterise(quarters(), ImageGeometry(35, -97, Range::longRange));
    EXPECT_NE(first, other);
    PolarScan moved = quarters();
    moved.longitude = -96.5;
    EXPECT_NE(rasterise(moved, kImage), first);
    EXPECT_EQ(rasterise(quarters(), kImage), first);
}

} // namespace
} // namespace raincast
