// SPDX-License-Identifier: MIT
#include "reading/measuring.h"
#include "reading/range_rings.h"
#include "reading_state.h"

#include <gmock/gmock.h>

namespace raincast {
namespace {

using testing::ElementsAre;

class MeasuringTest : public test::ReadingState {};

// A degree of latitude is 60 nautical miles.
TEST_F(MeasuringTest, TellsTheWayThereAndBackAndHowLongItTakes) {
    use(CUnits::kNauticalMiles);
    EXPECT_THAT(
        measuredLines({{37, -122}, {38, -122}, 20}),
        ElementsAre("59.9 NM 000° / 180°", "3 h 00 min at 20.0 kts")
    );
    EXPECT_THAT(measuredLines({{0, 10}, {0, 9}, 0}), ElementsAre("60.1 NM 270° / 090°"));
}

TEST_F(MeasuringTest, TheWayOverTheDateLineIsTheShortOne) {
    use(CUnits::kKilometres);
    EXPECT_THAT(measuredLines({{13, 179.5}, {13, -179.5}, 0}), ElementsAre("108 km 090° / 270°"));
}

TEST_F(MeasuringTest, AtRestThereIsNoTime) {
    EXPECT_EQ(measuredLines({{37, -122}, {38, -122}, 0.3}).size(), 1);
    EXPECT_EQ(measuredLines({{37, -122}, {38, -122}, 0.6}).size(), 2);
}

TEST_F(MeasuringTest, TimesAreInMinutesAndHours) {
    EXPECT_EQ(durationText(0.2), "0 min");
    EXPECT_EQ(durationText(59.4), "59 min");
    EXPECT_EQ(durationText(59.6), "1 h 00 min");
    EXPECT_EQ(durationText(125), "2 h 05 min");
    EXPECT_EQ(durationText(1e300), "over 99 h");
}

TEST_F(MeasuringTest, RingsStandAtRoundDistances) {
    use(CUnits::kKilometres);
    for (const auto& [reach, step] :
         {std::pair(240'000.0, 50.0), {120'000, 20}, {60'000, 10}, {4'000, 1}, {480'000, 100}}) {
        EXPECT_NEAR(CUnits::global().distanceOf(ringStep(reach)), step, 1e-6) << reach;
    }
    use(CUnits::kMiles);
    EXPECT_NEAR(CUnits::global().distanceOf(ringStep(240'000)), 20, 1e-6);
    EXPECT_EQ(ringStep(0), 0);
    EXPECT_EQ(ringStep(-1), 0);
}

} // namespace
} // namespace raincast
