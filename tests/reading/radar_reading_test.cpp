// SPDX-License-Identifier: MIT
#include "../map/placed_image.h"
#include "palette/nws_colours.h"
#include "reading/radar_reading.h"
#include "reading_state.h"
#include "support/time_zone.h"

#include <QPainter>

#include <gmock/gmock.h>

namespace raincast {
namespace {

using test::positionOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using Use = RadarReading::Use;

constexpr FileTime kMinute = kFileTimePerMinute;

/// A picture of 600 by 550 pixels, 100 to a degree, shown as it is in an area as large: a storm of
/// 45 dBZ in one frame, and further east in another.
class RadarReadingTest : public test::ReadingState {
protected:
    RadarReadingTest() {
        use(CUnits::kNauticalMiles);
        sight.placed = true;
        sight.radar = positionOf(300, 275);
        sight.now = fromCalendar({2019, 5, 19, 6, 0});
        sight.hasPicture = true;
        sight.width = 600;
        show(0);
    }

    /// Frame 0 is of 5:30, frame 1 of 6:00.
    void show(int frame) {
        auto picture = std::make_shared<QImage>(600, 550, QImage::Format_RGB32);
        picture->fill(kTransparentWhite);
        const auto& colours = nwsColours(Quantity::reflectivity);
        for (int i = 0; i < 400; ++i) {
            picture->setPixel(200 + 30 * frame + i % 20, 200 + i / 20, colours[9]);
        }
        picture->setPixel(10, 10, 0xFF303030);
        sight.frame = picture;
        sight.frameTime = fromCalendar({2019, 5, 19, 5, 30}) + frame * 30 * kMinute;
    }
    QImage draw() {
        QImage page(600, 550, QImage::Format_RGB32);
        page.fill(Qt::gray);
        QPainter painter(&page);
        reading.draw(painter, sight);
        return page;
    }
    std::vector<std::string> words() {
        draw();
        std::vector<std::string> lines;
        for (const QString& line : reading.wordsDrawn()) {
            lines.push_back(line.toStdString());
        }
        return lines;
    }
    std::vector<std::string> readout(QPoint place) const {
        std::vector<std::string> lines;
        for (const QString& line : RadarReading::readout(sight, place)) {
            lines.push_back(line.toStdString());
        }
        return lines;
    }
    void track() {
        reading.trackStorm();
        show(0);
        EXPECT_TRUE(reading.tap({210, 210}, sight));
        show(1);
        EXPECT_TRUE(reading.tap({240, 210}, sight));
    }

    const TimeZone m_zone{"UTC0"};
    const GeoReference reference = test::placedImage();
    RadarSight sight{MapSight{QRect(0, 0, 600, 550), ViewTransform(), reference}};
    RadarReading reading;
};

TEST_F(RadarReadingTest, TheReadoutTellsValueAndPlace) {
    EXPECT_THAT(
        readout({210, 210}), ElementsAre(
                                 "45 to 49 dBZ", "38°53.700'N, 102°53.700'W",
                                 "From radar 57.7 NM 313°", "Beam 5260 ft above radar"
                             )
    );
    EXPECT_EQ(readout({300, 100})[0], "below 5 dBZ");
    sight.own = positionOf(300, 275);
    EXPECT_THAT(readout({300, 275}), Contains("From you 0.00 NM 000°"));
}

TEST_F(RadarReadingTest, AColourThatNoTableKnowsHasNoValue) {
    EXPECT_EQ(readout({10, 10})[0], "40°53.700'N, 104°53.700'W");
    sight.frame = nullptr;
    EXPECT_EQ(readout({210, 210})[0], "38°53.700'N, 102°53.700'W");
}

TEST_F(RadarReadingTest, BeyondTheRadarsRangeItSaysSo) {
    EXPECT_EQ(readout({590, 275})[0], "outside the radar's range");
    sight.product = Product::longRangeReflectivity;
    EXPECT_EQ(readout({590, 275})[0], "below 5 dBZ");
}

TEST_F(RadarReadingTest, HeightsAreThoseOfProductsOfTheLowestBeam) {
    for (const Product product : kAllProducts) {
        sight.product = product;
        const bool lowest =
            product == Product::baseReflectivity || product == Product::longRangeReflectivity ||
            product == Product::velocity || product == Product::stormRelativeVelocity;
        const auto lines = readout({210, 210});
        EXPECT_EQ(lines.back().starts_with("Beam "), lowest) << codeOf(product);
    }
}

TEST_F(RadarReadingTest, BesideThePictureThereIsNothingToRead) {
    sight.map.view = ViewTransform(0, {-100, -100});
    EXPECT_THAT(readout({50, 200}), IsEmpty());
    EXPECT_THAT(readout({200, 50}), IsEmpty());
    sight.placed = false;
    EXPECT_THAT(readout({310, 310}), IsEmpty());
}

TEST_F(RadarReadingTest, ThePointerShowsItWhereItRestsAndMarksTheScale) {
    const QImage before = draw();
    EXPECT_FALSE(reading.pointerMoved({210, 210}));
    EXPECT_EQ(draw(), before);
    EXPECT_TRUE(reading.pointerRested({210, 210}));
    const QImage shown = draw();
    EXPECT_NE(shown.copy(220, 220, 100, 60), before.copy(220, 220, 100, 60)) << "the readout";
    EXPECT_NE(shown.copy(540, 0, 60, 550), before.copy(540, 0, 60, 550)) << "the scale";
    EXPECT_TRUE(reading.pointerMoved({212, 210}));
    EXPECT_EQ(draw(), before);
    reading.pointerRested({212, 210});
    EXPECT_TRUE(reading.pointerLeft());
    EXPECT_EQ(draw(), before);
    EXPECT_FALSE(reading.pointerLeft());
}

TEST_F(RadarReadingTest, ATapOnTheScaleHidesItAndOneOnTheUnitShowsIt) {
    const QImage scale = draw();
    EXPECT_EQ(scale.pixelColor(598, 275), QColor(Qt::white));
    EXPECT_TRUE(reading.tap({598, 275}, sight));
    const QImage badge = draw();
    EXPECT_EQ(badge.pixelColor(598, 275), QColor(Qt::gray));
    int row = 0;
    while (row < 275 && badge.pixelColor(599, row) == QColor(Qt::gray)) {
        ++row;
    }
    ASSERT_LT(row, 275) << "the unit is there";
    EXPECT_TRUE(reading.tap({595, row + 2}, sight));
    EXPECT_EQ(draw(), scale);
}

TEST_F(RadarReadingTest, ANarrowAreaHasTheScaleOnlyIfItIsAskedFor) {
    sight.width = 399;
    EXPECT_EQ(draw().pixelColor(598, 275), QColor(Qt::gray));
    ReadingSetting::showScale(true);
    EXPECT_EQ(draw().pixelColor(598, 275), QColor(Qt::white));
}

TEST_F(RadarReadingTest, WithoutAPictureThereIsNoScale) {
    sight.hasPicture = false;
    sight.frame = nullptr;
    QImage empty(600, 550, QImage::Format_RGB32);
    empty.fill(Qt::gray);
    EXPECT_EQ(draw(), empty);
    EXPECT_FALSE(reading.tap({598, 275}, sight));
}

TEST_F(RadarReadingTest, RingsAreDrawnRoundTheRadarOrTheUser) {
    const QImage before = draw();
    ReadingSetting::showRings(ReadingSetting::kRingsRoundRadar);
    const QImage rings = draw();
    EXPECT_NE(rings, before);
    ReadingSetting::showRings(ReadingSetting::kRingsRoundPosition);
    EXPECT_EQ(draw(), before) << "nobody knows where";
    sight.own = sight.radar;
    EXPECT_EQ(draw(), rings);
}

TEST_F(RadarReadingTest, AWayIsMeasuredToThePointerUntilATapEndsIt) {
    EXPECT_EQ(reading.use(), Use::none);
    reading.measureFrom(positionOf(300, 275));
    EXPECT_EQ(reading.use(), Use::measuring);
    EXPECT_THAT(words(), ElementsAre("Measuring  ×"));
    EXPECT_TRUE(reading.pointerMoved({400, 275}));
    const QImage there = draw();
    EXPECT_TRUE(reading.pointerMoved({400, 100}));
    EXPECT_NE(draw(), there);
    EXPECT_TRUE(reading.tap({400, 275}, sight));
    EXPECT_FALSE(reading.pointerMoved({410, 100}));
    EXPECT_EQ(draw(), there) << "it stays where the tap was";
    EXPECT_TRUE(reading.end());
    EXPECT_FALSE(reading.end());
    EXPECT_THAT(words(), IsEmpty());
}

TEST_F(RadarReadingTest, WithoutAPointerAWayEndsInTheMiddle) {
    reading.measureFrom(positionOf(100, 100));
    const QImage middle = draw();
    reading.pointerMoved({299, 274});
    EXPECT_EQ(draw().copy(0, 0, 250, 250), middle.copy(0, 0, 250, 250));
    EXPECT_TRUE(reading.takeMiddle(sight));
    reading.pointerMoved({100, 300});
    EXPECT_EQ(draw().copy(0, 0, 250, 250), middle.copy(0, 0, 250, 250));
}

TEST_F(RadarReadingTest, AStormIsTouchedTwice) {
    reading.trackStorm();
    EXPECT_EQ(reading.use(), Use::trackFirst);
    EXPECT_THAT(words(), ElementsAre("Touch the storm in the picture of 5:30  ×"));
    reading.tap({210, 210}, sight);
    EXPECT_EQ(reading.use(), Use::trackLast);
    show(1);
    EXPECT_THAT(words(), ElementsAre("Touch it again in the picture of 6:00  ×"));
    reading.tap({240, 210}, sight);
    EXPECT_EQ(reading.use(), Use::tracked);
    // 30 pixels are 0.3 degrees: 14.04 nautical miles at this latitude in half an hour.
    EXPECT_THAT(words(), ElementsAre("Moves 090° at 28.1 kts  ×"));
}

TEST_F(RadarReadingTest, ItTellsWhenTheStormArrives) {
    track();
    sight.own = positionOf(300, 212);
    sight.target = positionOf(300, 400);
    sight.now += 5 * kMinute;
    EXPECT_THAT(
        words(), ElementsAre(
                     "Moves 090° at 28.1 kts  ×", "Reaches you at 7:00, in 55 minutes",
                     "Passes 114 NM 000° from target at 7:00"
                 )
    );
    EXPECT_FALSE(reading.wordsChanged(sight));
    sight.now += kMinute;
    EXPECT_TRUE(reading.wordsChanged(sight));
    sight.now += 60 * kMinute;
    EXPECT_THAT(words(), Contains("Reached you at 7:00"));
    sight.own.reset();
    sight.target.reset();
    reading.tap({150, 210}, sight);
    EXPECT_THAT(words(), Contains("Moves away from the point"));
}

TEST_F(RadarReadingTest, ATouchInThePicturesGapIsNoTouch) {
    reading.trackStorm();
    sight.frameTime.reset();
    EXPECT_TRUE(reading.tap({210, 210}, sight));
    EXPECT_EQ(reading.use(), Use::trackFirst);
}

TEST_F(RadarReadingTest, ATapOnItsWordsEndsIt) {
    track();
    const QImage page = draw();
    EXPECT_TRUE(reading.tap({300, 550 - 5 * QFontMetrics(QFont()).height() / 2 - 6}, sight));
    EXPECT_EQ(reading.use(), Use::none);
    EXPECT_NE(draw(), page);
}

TEST_F(RadarReadingTest, NobodyIsAskedWhileNothingIsUnderWay) {
    EXPECT_FALSE(reading.tap({210, 210}, sight));
    EXPECT_FALSE(reading.takeMiddle(sight));
}

} // namespace
} // namespace raincast
