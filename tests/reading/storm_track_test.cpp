// SPDX-License-Identifier: MIT
#include "geo/way.h"
#include "image/image_file.h"
#include "nexrad/level3_decoder.h"
#include "palette/nws_colours.h"
#include "radar/catalogue/antenna_positions.h"
#include "radar/catalogue/image_geometry.h"
#include "reading/storm_track.h"
#include "sample/sample_scan.h"
#include "sample/sample_weather.h"
#include "support/files.h"

#include <QDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace raincast {
namespace {

constexpr FileTime kSeen = 132'000'000'000'000'000;
constexpr FileTime kMinute = kFileTimePerMinute;
constexpr GeoPosition kStart{37, -122};

/// So many minutes later, a storm that goes north at 30 knots.
StormTrack northward(double minutes = 30) {
    const double metres = 30 * 1852.0 * minutes / 60;
    const auto time = static_cast<FileTime>(minutes * kMinute);
    return {{kStart, kSeen - time}, {LocalFrame(kStart).fromMetres({0, metres}), kSeen}};
}

TEST(StormTrackTest, TellsSpeedAndDirection) {
    const StormTrack track = northward();
    EXPECT_NEAR(track.knots(), 30, 0.01);
    EXPECT_NEAR(track.bearing(), 0, 0.01);
    EXPECT_FALSE(track.standsStill());
    const GeoPosition next = track.placeAt(kSeen + 30 * kMinute);
    const LocalOffset way = shortWay(track.last().place, next);
    EXPECT_NEAR(way.northMetres, 15 * 1852, 5);
    EXPECT_NEAR(way.eastMetres, 0, 1);
}

TEST(StormTrackTest, WhatDidNotMoveStandsStill) {
    for (const StormTrack& track :
         {StormTrack({kStart, kSeen - kMinute}, {kStart, kSeen}),
          StormTrack({kStart, kSeen}, {{38, -122}, kSeen}),
          StormTrack({kStart, kSeen + kMinute}, {{38, -122}, kSeen})}) {
        EXPECT_TRUE(track.standsStill());
        EXPECT_EQ(track.knots(), 0);
        EXPECT_FALSE(track.passing({38, -122}));
    }
}

TEST(StormTrackTest, ReachesWhatLiesAhead) {
    const StormTrack track = northward();
    const GeoPosition ahead = LocalFrame(track.last().place).fromMetres({2'000, 27'780});
    const auto passing = track.passing(ahead);
    ASSERT_TRUE(passing);
    EXPECT_TRUE(passing->reaches);
    EXPECT_NEAR(passing->metres, 2'000, 20);
    EXPECT_NEAR(static_cast<double>(passing->time - kSeen) / kMinute, 30, 0.1);
}

TEST(StormTrackTest, PassesWhatLiesAside) {
    const StormTrack track = northward();
    const auto passing = track.passing(LocalFrame(track.last().place).fromMetres({30'000, 27'780}));
    ASSERT_TRUE(passing);
    EXPECT_FALSE(passing->reaches);
    EXPECT_NEAR(passing->metres, 30'000, 300);
    EXPECT_NEAR(passing->bearing, 270, 1) << "the storm is to the west";
}

TEST(StormTrackTest, HasPassedWhatLiesBehind) {
    EXPECT_FALSE(northward().passing(kStart));
}

// --- Touched in pictures ------------------------------------------------------------------------

/// The middle of the pixels of at least a level within so many pixels of a place, as an eye finds
/// it that looks for the storm there.
std::optional<ImagePoint> coreNear(const QImage& picture, ImagePoint place, std::size_t least) {
    constexpr double kReach = 25;
    double columns = 0;
    double rows = 0;
    int count = 0;
    for (int row = 0; row < picture.height(); ++row) {
        for (int column = 0; column < picture.width(); ++column) {
            const auto level = nwsLevelOf(Quantity::reflectivity, picture.pixel(column, row));
            if (level.value_or(0) >= least &&
                std::hypot(column - place.column, row - place.row) <= kReach) {
                columns += column;
                rows += row;
                ++count;
            }
        }
    }
    return count >= 6 ? std::optional(ImagePoint{columns / count, rows / count}) : std::nullopt;
}

struct Site {
    explicit Site(std::string_view id)
        : antenna(*findAntenna(id)), image(antenna.latitude, antenna.longitude, Range::shortRange) {
    }

    [[nodiscard]] ImagePoint pixelOf(PlaneVector km) const {
        const GeoPosition place = LocalFrame({antenna.latitude, antenna.longitude})
                                      .fromMetres({km.east * 1000, km.north * 1000});
        return {image.columnOfLongitude(place.longitude), image.rowOfLatitude(place.latitude)};
    }
    [[nodiscard]] GeoPosition positionOf(ImagePoint pixel) const {
        return {image.latitudeOfRow(pixel.row), image.longitudeOfColumn(pixel.column)};
    }

    AntennaPosition antenna;
    ImageGeometry image;
};

double turnBetween(double first, double second) {
    return std::abs(std::remainder(first - second, 360));
}

/// Whether a storm is well alive and no other one is so near that an eye might take both for one.
bool standsAlone(const SampleStorm& storm, const std::vector<SampleStorm>& all, double minute) {
    constexpr double kApartKm = 40;
    return storm.strengthAt(minute) > .5 &&
           std::none_of(all.begin(), all.end(), [&](const SampleStorm& other) {
               return other.seed != storm.seed && other.strengthAt(minute) > 0 &&
                      (other.placeAt(minute) - storm.placeAt(minute)).length() < kApartKm;
           });
}

TEST(StormTrackTest, TracksTheStormsOfSampleWeather) {
    constexpr double kKnotsPerKmAMinute = 60 / 1.852;
    constexpr Product kProduct = Product::baseReflectivity;
    const SampleWeather weather;
    int tracked = 0;
    for (const char* const id : {"TLX", "MUX", "OKX", "LOT", "FWS", "DIX", "AMX", "ATX"}) {
        const Site site(id);
        const auto times = weather.frameTimes(id, kProduct, kSeen);
        ASSERT_GT(times.size(), 8U);
        const FileTime last = times.back();
        const FileTime first = times[times.size() - 8];
        const auto minuteOf = [](FileTime time) {
            return static_cast<double>(time - kUnixEpoch) / kMinute;
        };
        const QImage before = decodeImage(*weather.frame(id, kProduct, first));
        const QImage after = decodeImage(*weather.frame(id, kProduct, last));
        const auto storms = stormsAt(sampleClimate(id), minuteOf(last), 220);
        for (const SampleStorm& storm : storms) {
            const PlaneVector was = storm.placeAt(minuteOf(first));
            if (was.length() > 200 || !standsAlone(storm, storms, minuteOf(first)) ||
                !standsAlone(storm, storms, minuteOf(last))) {
                continue;
            }
            const auto touched = coreNear(before, site.pixelOf(was), 9);
            const auto again = coreNear(after, site.pixelOf(storm.placeAt(minuteOf(last))), 9);
            if (!touched || !again) {
                continue;
            }
            const StormTrack track(
                {site.positionOf(*touched), first}, {site.positionOf(*again), last}
            );
            const double knots = storm.motion.length() * kKnotsPerKmAMinute;
            const double bearing =
                std::atan2(storm.motion.east, storm.motion.north) * 180 / std::numbers::pi;
            EXPECT_NEAR(track.knots(), knots, knots / 10) << id;
            EXPECT_LE(turnBetween(track.bearing(), bearing), 10) << id;
            ++tracked;
        }
    }
    EXPECT_GE(tracked, 3);
}

// --- In real scans ------------------------------------------------------------------------------

using Scan = PolarScan;

std::vector<Scan> recordedScans() {
    const QDir folder(
        qEnvironmentVariable("RAINCAST_TEST_DATA") + QStringLiteral("/level3/okx-sequence")
    );
    std::vector<Scan> scans;
    for (const QString& name : folder.entryList(QDir::Files, QDir::Name)) {
        auto scan = decodeLevel3(readFile(folder.filePath(name)));
        EXPECT_TRUE(scan) << qPrintable(name);
        if (scan) {
            scans.push_back(*scan);
        }
    }
    return scans;
}

/// The level of a place so many kilometres from the antenna.
int levelAt(const Scan& scan, double eastKm, double northKm) {
    const double azimuth = std::atan2(eastKm, northKm) * 180 / std::numbers::pi;
    const int tenth = static_cast<int>(azimuth < 0 ? (azimuth + 360) * 10 : azimuth * 10);
    const auto cell = static_cast<int>(std::hypot(eastKm, northKm) / scan.cellKm);
    for (int row = 0; row < scan.rows; ++row) {
        const RadialSpan& span = scan.radials[static_cast<std::size_t>(row)];
        if ((tenth - span.startTenths + 3600) % 3600 < span.widthTenths && cell < scan.columns) {
            return scan.levels[scan.cell(row, cell)];
        }
    }
    return 0;
}

/// How much two scans differ around a place, in levels a square of 2 km, when the second is looked
/// at where the way of so many kilometres leads.
double difference(const Scan& first, const Scan& second, LocalOffset wayKm) {
    constexpr double kEast = 60; // the band of showers in the south
    constexpr double kNorth = -110;
    constexpr int kReach = 50;
    double sum = 0;
    int count = 0;
    for (int east = -kReach; east <= kReach; east += 2) {
        for (int north = -kReach; north <= kReach; north += 2) {
            sum += std::abs(
                levelAt(first, kEast + east, kNorth + north) -
                levelAt(second, kEast + east + wayKm.eastMetres, kNorth + north + wayKm.northMetres)
            );
            ++count;
        }
    }
    return sum / count;
}

// The band of showers south of the radar, whose north-eastern end was read off the first and the
// last of twelve pictures: it went 23 km east and 35 km north in 51 minutes.
TEST(RealDataStormTrackTest, TracksABandOfShowers) {
    const auto scans = recordedScans();
    if (scans.size() != 12) {
        GTEST_SKIP() << "RAINCAST_TEST_DATA names no folder with level3/okx-sequence";
    }
    const Scan& first = scans.front();
    const Scan& last = scans.back();
    const LocalFrame radar({first.latitude, first.longitude});
    const auto placeAt = [&radar](double eastKm, double northKm) {
        return radar.fromMetres({eastKm * 1000, northKm * 1000});
    };
    const StormTrack track({placeAt(115, -133), first.time}, {placeAt(138, -98), last.time});
    EXPECT_NEAR(track.knots(), 26.5, 2.6);
    EXPECT_NEAR(track.bearing(), 35, 10);

    // And so did what the scans between them show.
    const Scan& middle = scans[6];
    const double seconds = static_cast<double>(middle.time - first.time) / kFileTimePerSecond;
    const double km = track.knots() * 1.852 * seconds / 3600;
    const double angle = track.bearing() * std::numbers::pi / 180;
    const double tracked = difference(first, middle, {km * std::sin(angle), km * std::cos(angle)});
    EXPECT_LT(tracked, .75 * difference(first, middle, {0, 0}));
    EXPECT_LT(
        tracked, .75 * difference(first, middle, {-km * std::sin(angle), km * std::cos(angle)})
    );
}

} // namespace
} // namespace raincast
