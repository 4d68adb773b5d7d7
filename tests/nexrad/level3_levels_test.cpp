// SPDX-License-Identifier: MIT
#include "nexrad/level3_levels.h"
#include "support/level3_maker.h"

#include <gtest/gtest.h>

#include <cmath>

namespace raincast {
namespace {

using Thresholds = std::array<std::uint16_t, 16>;

PolarScan scanOf(int code, const Thresholds& thresholds) {
    const Level3Kind* kind = findLevel3Kind(code);
    PolarScan scan;
    scan.product = kind->product;
    Level3Description description;
    description.thresholds = thresholds;
    EXPECT_TRUE(readLevel3Levels(description, *kind, 30, scan).has_value());
    return scan;
}

std::string errorOf(int code, const Thresholds& thresholds) {
    PolarScan scan;
    Level3Description description;
    description.thresholds = thresholds;
    const auto read = readLevel3Levels(description, *findLevel3Kind(code), 30, scan);
    return read ? std::string() : read.error().toStdString();
}

TEST(Level3LevelsTest, SixteenLevelsHaveThresholdsWithFlags) {
    // ND, -64 … -1, 0, +10 … +64, RF as velocities have them.
    const PolarScan scan = scanOf(
        27, {0x8002, 0x0140, 0x0132, 0x0124, 0x011A, 0x0114, 0x010A, 0x0101, 0x0000, 0x020A, 0x0214,
             0x021A, 0x0224, 0x0232, 0x0240, 0x8003}
    );
    EXPECT_TRUE(std::isnan(scan.values[0]));
    EXPECT_FLOAT_EQ(scan.values[1], -64);
    EXPECT_FLOAT_EQ(scan.values[7], -1);
    EXPECT_FLOAT_EQ(scan.values[14], 64);
    EXPECT_TRUE(std::isinf(scan.values[15]));
    for (std::uint8_t level = 0; level < 16; ++level) {
        EXPECT_EQ(scan.levels[level], level);
    }
    EXPECT_TRUE(std::isnan(scan.values[16]));
    EXPECT_EQ(scan.levels[200], 0);
}

TEST(Level3LevelsTest, ThresholdsMayBeTenthsTwentiethsAndHundredths) {
    const PolarScan scan =
        scanOf(78, {0xA002, 0x2800, 0x2002, 0x2005, 0x1003, 0x4019, 0x1103, 0x8001, 0x8000});
    EXPECT_FLOAT_EQ(scan.values[1], 0);
    EXPECT_FLOAT_EQ(scan.values[2], .1F);
    EXPECT_FLOAT_EQ(scan.values[3], .25F);
    EXPECT_FLOAT_EQ(scan.values[4], .3F);
    EXPECT_FLOAT_EQ(scan.values[5], .25F);
    EXPECT_FLOAT_EQ(scan.values[6], -.3F);
    EXPECT_TRUE(std::isnan(scan.values[7]));
    EXPECT_TRUE(std::isnan(scan.values[8]));
    EXPECT_EQ(scan.levels[1], 1);
    EXPECT_EQ(scan.levels[5], 5);
    EXPECT_EQ(scan.levels[7], 0);
}

TEST(Level3LevelsTest, ClearAirReflectivityIsColouredByItsDbz) {
    // -28 to +28 in steps of four.
    Thresholds thresholds{0x8002};
    for (int level = 1; level < 16; ++level) {
        const int dbz = -32 + 4 * level;
        thresholds[static_cast<std::size_t>(level)] =
            static_cast<std::uint16_t>(dbz < 0 ? 0x0100 - dbz : dbz);
    }
    const PolarScan scan = scanOf(19, thresholds);
    EXPECT_FLOAT_EQ(scan.values[1], -28);
    EXPECT_EQ(scan.levels[1], 0);
    EXPECT_EQ(scan.levels[9], 0);  // 4 dBZ
    EXPECT_EQ(scan.levels[10], 1); // 8 dBZ
    EXPECT_EQ(scan.levels[15], 5); // 28 dBZ
}

TEST(Level3LevelsTest, DigitalReflectivityStartsAtItsLeastValue) {
    const PolarScan scan = scanOf(94, digitalThresholds(-320, 5));
    EXPECT_TRUE(std::isnan(scan.values[0]));
    EXPECT_TRUE(std::isnan(scan.values[1]));
    EXPECT_FLOAT_EQ(scan.values[2], -32);
    EXPECT_FLOAT_EQ(scan.values[255], 94.5);
    EXPECT_EQ(scan.levels[75], 0); // 4.5 dBZ
    EXPECT_EQ(scan.levels[76], 1); // 5 dBZ
    EXPECT_EQ(scan.levels[255], 15);
}

TEST(Level3LevelsTest, DigitalVelocityIsMetresASecondAndShownInKnots) {
    const PolarScan scan = scanOf(99, digitalThresholds(-635, 5));
    EXPECT_TRUE(std::isinf(scan.values[1]));
    EXPECT_EQ(scan.levels[1], 15);
    EXPECT_FLOAT_EQ(scan.values[129], 0);
    EXPECT_EQ(scan.levels[129], 8);
    EXPECT_NEAR(scan.values[2], -123.434, .001);
    EXPECT_EQ(scan.levels[2], 1);
    EXPECT_EQ(scan.levels[129 + 37], 12); // 18.5 m/s: 36 knots
    EXPECT_EQ(scan.levels[129 - 37], 3);
}

TEST(Level3LevelsTest, AccumulationsHaveFloatingPointScaleAndOffset) {
    const PolarScan scan = scanOf(172, accumulationThresholds(.5F, 0));
    EXPECT_TRUE(std::isnan(scan.values[0]));
    EXPECT_FLOAT_EQ(scan.values[1], .02F);
    EXPECT_FLOAT_EQ(scan.values[150], 3);
    EXPECT_EQ(scan.levels[1], 1);
    EXPECT_EQ(scan.levels[150], 8);
}

TEST(Level3LevelsTest, ScalesWithoutSenseAreNamed) {
    EXPECT_EQ(
        errorOf(94, digitalThresholds(-320, 0)), "the data levels' increment at byte 92 is 0"
    );
    EXPECT_EQ(
        errorOf(170, accumulationThresholds(0, 0)),
        "the data levels' scale at byte 90 is not a positive number"
    );
    EXPECT_EQ(
        errorOf(170, accumulationThresholds(1, std::nanf(""))),
        "the data levels' offset at byte 94 is not a number"
    );
}

} // namespace
} // namespace raincast
