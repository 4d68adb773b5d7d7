// SPDX-License-Identifier: MIT
#include "nexrad/rasteriser.h"
#include "nexrad/scan_placement.h"
#include "nexrad/small_cells.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace raincast {
namespace {

constexpr double kLatitude = 35.333;
constexpr double kLongitude = -97.278;

/// Radials of half a degree with cells of 250 metres, as radars with super-resolution have them;
/// nearly a third of the cells has an echo of 1 to 15.
PolarScan superResolution(int columns = 920) {
    PolarScan scan;
    scan.latitude = kLatitude;
    scan.longitude = kLongitude;
    scan.rows = 720;
    scan.columns = columns;
    scan.cellKm = .25;
    for (int i = 0; i < scan.rows; ++i) {
        scan.radials.push_back({i * 5, 5});
    }
    for (std::size_t level = 1; level < 16; ++level) {
        scan.levels[level] = static_cast<std::uint8_t>(level);
        scan.values[level] = static_cast<float>(level) * 5;
    }
    std::uint32_t state = 1;
    scan.cells.resize(std::size_t{720} * static_cast<std::size_t>(columns));
    for (std::uint8_t& cell : scan.cells) {
        state = state * 1664525 + 1013904223;
        cell = state >> 30 == 0 ? static_cast<std::uint8_t>(1 + (state >> 16) % 15) : 0;
    }
    return scan;
}

ImageGeometry sharp(int detail) {
    return {kLatitude, kLongitude, Range::shortRange, detail};
}

std::uint8_t cellSeen(const PolarScan& scan, const PolarPlace& place) {
    const int column = static_cast<int>(place.km / scan.cellKm);
    const int row = static_cast<int>(place.azimuthDegrees * 2) % 720;
    return column < scan.columns ? scan.levels[scan.cell(row, column)] : std::uint8_t{0};
}

/// What a place of the picture, which need not be a pixel's centre, shows by the rule alone.
std::uint8_t levelAt(const PolarScan& scan, const ImageGeometry& image, double column, double row) {
    return cellSeen(
        scan,
        seenFrom(kLatitude, kLongitude, image.latitudeOfRow(row), image.longitudeOfColumn(column))
    );
}

/// How many cells were looked for, of those nearer than some: each of them, or a stronger one, must
/// be shown where its middle is. The n-th row of cells begins at azimuth(n) degrees.
template<typename Azimuth>
int expectEveryCell(const PolarScan& scan, int detail, int columns, Azimuth azimuth) {
    const ImageGeometry image = sharp(detail);
    const IndexedPicture picture = rasterise(scan, image);
    const LocalSphere sphere(kLatitude, kLongitude);
    int seen = 0;
    int lost = 0;
    for (int row = 0; row < scan.rows; row += 7) {
        for (int column = 0; column < columns; ++column) {
            const SpherePlace place = sphere.placeAt(azimuth(row) + .25, (column + .5) * .25);
            const double x = image.columnOfLongitude(place.longitude) + .5;
            const double y = image.rowOfLatitude(place.latitude) + .5;
            // Within a hundredth of a pixel's edge it may be the neighbour that shows it.
            const bool clear =
                std::abs(x - std::round(x)) > .01 && std::abs(y - std::round(y)) > .01;
            if (clear && x > 0 && y > 0 && x < picture.width() && y < picture.height()) {
                ++seen;
                lost += picture.row(static_cast<int>(y))[static_cast<int>(x)] <
                                scan.levels[scan.cell(row, column)]
                            ? 1
                            : 0;
            }
        }
    }
    EXPECT_EQ(lost, 0) << detail;
    return seen;
}

TEST(SmallCellsTest, EveryCellIsShownOrAStrongerOne) {
    PolarScan scan = superResolution();
    const auto inOrder = [](int row) { return row / 2.; };
    EXPECT_GT(expectEveryCell(scan, 2, scan.columns, inOrder), 80'000);
    // Nearer than this they are narrower than the smallest pixels, too.
    EXPECT_GT(expectEveryCell(scan, 4, 80, inOrder), 6'000);

    const auto mixed = [](int row) { return row * 7 % 720 / 2.; };
    for (int row = 0; row < scan.rows; ++row) {
        scan.radials[static_cast<std::size_t>(row)].startTenths = row * 7 % 720 * 5;
    }
    EXPECT_GT(expectEveryCell(scan, 2, scan.columns, mixed), 80'000);
}

TEST(SmallCellsTest, APixelShowsNothingThatDoesNotLieInIt) {
    const PolarScan scan = superResolution();
    for (const int detail : {2, 4}) {
        const ImageGeometry image = sharp(detail);
        const IndexedPicture picture = rasterise(scan, image);
        for (int row = 3; row < picture.height(); row += 37) {
            for (int column = 3; column < picture.width(); column += 11) {
                const std::uint8_t shown = picture.row(row)[column];
                bool lies = shown == levelAt(scan, image, column, row);
                // Thinner than any cell but those that lie at the antenna.
                for (double y = -.505; y < .51 && !lies; y += .101) {
                    for (double x = -.505; x < .51 && !lies; x += .101) {
                        lies = shown == levelAt(scan, image, column + x, row + y);
                    }
                }
                ASSERT_TRUE(lies) << detail << ": " << column << ' ' << row;
            }
        }
    }
}

TEST(SmallCellsTest, PixelsSmallerThanCellsShowWhatIsAtTheirCentres) {
    const PolarScan scan = superResolution();
    const ImageGeometry image = sharp(4);
    const IndexedPicture picture = rasterise(scan, image);
    for (int row = 0; row < picture.height(); row += 3) {
        for (int column = 0; column < picture.width(); column += 3) {
            // Half a degree is as wide as a pixel 23 km from the antenna.
            const double eastKm = (column - 1199.5) * .2;
            const double northKm = (1099.5 - row) * .245;
            if (std::hypot(eastKm, northKm) > 40) {
                ASSERT_EQ(picture.row(row)[column], levelAt(scan, image, column, row))
                    << column << ' ' << row;
            }
        }
    }
}

TEST(SmallCellsTest, TheSmallestPictureStaysAsItIs) {
    const PolarScan scan = superResolution();
    const ImageGeometry image = sharp(1);
    const IndexedPicture picture = rasterise(scan, image);
    for (int row = 0; row < picture.height(); row += 5) {
        for (int column = 0; column < picture.width(); column += 5) {
            ASSERT_EQ(picture.row(row)[column], levelAt(scan, image, column, row));
        }
    }
}

TEST(SmallCellsTest, OfVelocitiesTheFasterIsStronger) {
    PolarScan scan = superResolution(800);
    scan.values[1] = -50; // towards the radar
    scan.values[2] = -5;
    scan.values[3] = 20;
    scan.values[4] = rangeFolded();
    const auto shownOf = [&](std::uint8_t first, std::uint8_t second) {
        for (std::size_t i = 0; i < scan.cells.size(); ++i) {
            scan.cells[i] = i % 2 == 0 ? first : second;
        }
        const IndexedPicture picture = rasterise(scan, sharp(2));
        // Beyond where radials are narrower than pixels, to the east.
        const std::uint8_t* const row = picture.row(550);
        return static_cast<int>(std::count(row + 900, row + 1000, second));
    };
    EXPECT_GT(shownOf(2, 1), 75);
    EXPECT_LT(shownOf(1, 2), 25);
    EXPECT_GT(shownOf(2, 3), 75);
    EXPECT_LT(shownOf(1, 3), 25);
    EXPECT_LT(shownOf(2, 4), 25) << "nobody knows how fast that is";
    EXPECT_GT(shownOf(0, 4), 75);
}

TEST(SmallCellsTest, ScansOfNoRadarAreAsTheirCentres) {
    PolarScan wide = superResolution(40);
    wide.rows = 4;
    wide.columns = 7200;
    wide.radials.clear();
    for (int i = 0; i < 4; ++i) {
        wide.radials.push_back({i * 900, 900});
    }
    PolarScan longCells = superResolution();
    longCells.cellKm = 5000;
    PolarScan behind = superResolution(16);
    behind.firstKm = -2; // echoes on its first half alone
    for (std::size_t i = 0; i < behind.cells.size(); ++i) {
        behind.cells[i] = i % 16 < 8 ? std::uint8_t{15} : std::uint8_t{0};
    }
    for (const PolarScan& scan : {wide, longCells, behind}) {
        IndexedPicture picture(2, 3);
        showSmallCells(scan, sharp(2), picture);
        EXPECT_EQ(picture, IndexedPicture(2, 3));
    }
}

TEST(SmallCellsTest, ThePlaceOfADirectionIsSeenThere) {
    for (const double latitude : {-14.33, 13.45, kLatitude, 65.035}) {
        const LocalSphere sphere(latitude, kLongitude);
        for (double azimuth = 0; azimuth < 360; azimuth += 22.5) {
            for (const double km : {1., 60., 230., 460.}) {
                const SpherePlace place = sphere.placeAt(azimuth, km);
                const PolarPlace seen =
                    seenFrom(latitude, kLongitude, place.latitude, place.longitude);
                EXPECT_NEAR(seen.km, km, .001);
                EXPECT_NEAR(std::remainder(seen.azimuthDegrees - azimuth, 360.) * km, 0, .06);
            }
        }
    }
}

} // namespace
} // namespace raincast
