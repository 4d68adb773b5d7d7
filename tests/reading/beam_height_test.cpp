// SPDX-License-Identifier: MIT
#include "reading/beam_height.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(BeamHeightTest, TheBeamRisesAboveTheEarthThatCurvesAway) {
    // k = 4/3, a = 6371 km, 0.5 degrees.
    EXPECT_DOUBLE_EQ(beamHeight(0, kLowestBeamElevation), 0);
    EXPECT_NEAR(beamHeight(50'000, kLowestBeamElevation), 584, 1);
    EXPECT_NEAR(beamHeight(100'000, kLowestBeamElevation), 1462, 2);
    EXPECT_NEAR(beamHeight(230'000, kLowestBeamElevation), 5124, 5);
    EXPECT_NEAR(beamHeight(460'000, kLowestBeamElevation), 16496, 15);
}

TEST(BeamHeightTest, AtNoAngleItIsTheDipOfTheHorizon) {
    EXPECT_NEAR(beamHeight(100'000, 0), 100'000.0 * 100'000 / (2 * 6'371'000 * 4.0 / 3), 1);
}

} // namespace
} // namespace raincast
