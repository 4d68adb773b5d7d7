// SPDX-License-Identifier: MIT
// Marks and positions on map views: what is then on the screen.
#include "map/item_map_view.h"
#include "map/map_icon.h"
#include "map/mark_manager.h"
#include "map/overlay_gps_position.h"
#include "map_page.h"
#include "position/feed_rmc_to_gps_position.h"
#include "position/nmea/nmea_reader.h"
#include "support/serial_bytes.h"
#include "window/screen_metrics.h"

#include <deque>

namespace raincast {
namespace {

const PageRectangle kPlace{0, 0, 240, 300};

class PlacedView : public test::TestView {
public:
    PlacedView() { placeOnEarth(); }
    void draw(QPainter& painter) override {
        painter.fillRect(area(), QColor(0, 128, 0));
        TestView::draw(painter);
    }
};

class MarksOnMapsTest : protected test::SharedMapState, public test::PageTest {
protected:
    MarksOnMapsTest() { addView(); }

    PlacedView& addView() {
        auto item = std::make_unique<PlacedView>();
        PlacedView& view = *item;
        page->addItem(std::move(item));
        view.setRectangle(kPlace);
        return view;
    }
    /// Another page in the place of the one that there is.
    void useAnotherPage() {
        page->deactivate();
        page = std::make_unique<CPageDisplay>();
        addView();
        showPage();
    }
    /// Whether the screen shows a picture, where it is opaque, with its corner at a place.
    ::testing::AssertionResult shows(const QImage& picture, QPoint corner) const {
        const QImage seen = screen();
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QRgb pixel = picture.pixel(x, y);
                const QPoint place = corner + QPoint(x, y);
                if (qAlpha(pixel) == 255 && seen.pixel(place) != pixel) {
                    return ::testing::AssertionFailure()
                           << "not at " << place.x() << "," << place.y();
                }
            }
        }
        return ::testing::AssertionSuccess();
    }
    QImage screenDrawnAnew() const {
        page->items()[0]->invalidate();
        return screen();
    }
    ::testing::AssertionResult showsPinAt(int x, int y) const {
        return shows(mapIconPicture(MapIcon::mark, false), QPoint(x, y) - COverlayMark::kHotSpot);
    }
    ::testing::AssertionResult showsPositionAt(int x, int y, MapIcon icon) const {
        const bool large = ScreenMetrics::current().iconWidth() >= 64;
        const int half = positionPictureExtent(large) / 2;
        return shows(mapIconPicture(icon, large), QPoint(x - half, y - half));
    }
};

TEST_F(MarksOnMapsTest, AMarkIsShownWhenItIsAddedAndGoneWhenItIsRemoved) {
    showPage();
    const QImage empty = screen();
    const COverlayMark& mark = marks.add(test::positionOf(100, 150), QStringLiteral("Pier"));
    EXPECT_TRUE(showsPinAt(100, 150));
    const QImage named = screen();
    marks.rename(mark, QStringLiteral("Harbour wall"));
    EXPECT_TRUE(showsPinAt(100, 150));
    EXPECT_NE(screen(), named);
    marks.remove(mark);
    EXPECT_EQ(screen(), empty);
}

TEST_F(MarksOnMapsTest, AViewMadeLaterShowsTheMarksThatThereAre) {
    showPage();
    marks.add(test::positionOf(100, 150), {});
    marks.add(test::positionOf(50, 200), {});
    useAnotherPage();
    EXPECT_TRUE(showsPinAt(100, 150));
    EXPECT_TRUE(showsPinAt(50, 200));
    marks.clear();
    EXPECT_FALSE(showsPinAt(100, 150));
    EXPECT_FALSE(showsPinAt(50, 200));
}

TEST_F(MarksOnMapsTest, MarksThatAreLoadedAreShown) {
    showPage();
    CMarkManager other;
    other.add(test::positionOf(60, 70), QStringLiteral("Buoy"));
    const QByteArray file = test::written(other);
    other.clear();
    EXPECT_TRUE(test::read(marks, file));
    EXPECT_TRUE(showsPinAt(60, 70));
}

TEST_F(MarksOnMapsTest, AMarkOffTheMapDrawsNothing) {
    showPage();
    const QImage empty = screen();
    for (const GeoPosition& place :
         {GeoPosition{90, 0}, GeoPosition{-90, 180}, GeoPosition{0, 0}, GeoPosition{41, 75},
          test::positionOf(100, 2000)}) {
        marks.add(place, QStringLiteral("Far"));
    }
    EXPECT_EQ(screen(), empty);
}

TEST_F(MarksOnMapsTest, NamesAreThereUntilTheViewIsZoomedOut) {
    showPage();
    marks.add(test::positionOf(100, 150), QStringLiteral("Pier"));
    const QImage named = screen();
    auto& view = static_cast<CItemMapView&>(*page->items()[0]);
    view.command(kZoomOut, 0);
    const QImage zoomedOut = screen();
    marks.rename(marks.marks().front(), {});
    EXPECT_EQ(screen(), zoomedOut) << "there was no name";
    view.command(kZoomIn, 0);
    EXPECT_NE(screen(), named) << "there was one";
}

TEST_F(MarksOnMapsTest, TenThousandMarksAreSavedLoadedAndDrawn) {
    CMarkManager many;
    for (int i = 0; i < 10000; ++i) {
        many.add(test::positionOf(i % 100, 200 + i / 100), QStringLiteral("Mark %1").arg(i));
    }
    many.add(test::positionOf(150, 150), {});
    const QByteArray file = test::written(many);
    many.clear();
    ASSERT_TRUE(test::read(marks, file));
    EXPECT_EQ(marks.marks().size(), 10001U);
    showPage();
    EXPECT_TRUE(showsPinAt(150, 150));
    EXPECT_NE(at(50, 250), QColor(0, 128, 0));
    EXPECT_EQ(test::written(marks), file);
}

TEST_F(MarksOnMapsTest, APositionIsShownWhereItIs) {
    showPage();
    const QImage empty = screen();
    {
        COverlayGPSPosition position;
        EXPECT_EQ(screen(), empty) << "nothing is known yet";
        position.latitude = test::positionOf(120, 90).latitude;
        position.longitude = test::positionOf(120, 90).longitude;
        position.fixType = kFixGps;
        position.publish();
        EXPECT_TRUE(showsPositionAt(120, 90, MapIcon::fixB));
        position.publish();
        EXPECT_TRUE(showsPositionAt(120, 90, MapIcon::fixA));
        EXPECT_EQ(at(120, 60), QColor(0, 128, 0));
        position.speed = 360;
        position.publish();
        EXPECT_EQ(at(120, 60), QColor(255, 0, 0)) << "the arrow to the north";
        position.fixType = kFixNone;
        position.publish();
        EXPECT_TRUE(showsPositionAt(120, 90, MapIcon::noFix));
        EXPECT_EQ(at(120, 60), QColor(0, 128, 0));
    }
    EXPECT_EQ(screen(), empty) << "the feed is gone";
}

// RMC and GGA of a receiver do not agree about the fix, and the map is drawn in between.
TEST_F(MarksOnMapsTest, IconAndArrowAreOfTheSamePosition) {
    showPage();
    COverlayGPSPosition position;
    const CFeedRMC_to_GPSPosition feed(position);
    NmeaReader reader;
    // Row 90, column 120: 40.095 N, 103.795 W.
    reader.feed("$GPRMC,120000,A,4005.7000,N,10347.7000,W,360.0,000.0,150607,,,A\n");
    EXPECT_EQ(position.icon(), MapIcon::fixB);
    EXPECT_EQ(at(120, 60), QColor(255, 0, 0)) << "the arrow to the north";
    const QImage fix = screen();
    reader.feed("$GPGGA,120000,4005.7000,N,10347.7000,W,0,00,,,M,,M,,\n");
    EXPECT_EQ(screenDrawnAnew(), fix);
    reader.feed("$GPRMC,120001,V,4005.7000,N,10347.7000,W,360.0,000.0,150607,,,N\n");
    EXPECT_TRUE(showsPositionAt(120, 90, MapIcon::noFix));
    const QImage lost = screen();
    reader.feed("$GPGGA,120001,4005.7000,N,10347.7000,W,1,08,1.0,10,M,,M,,\n");
    EXPECT_EQ(screenDrawnAnew(), lost);
    EXPECT_EQ(at(120, 60), QColor(0, 128, 0));
}

// A receiver and a navigator on the same boat, and the navigator is not asked any more.
TEST_F(MarksOnMapsTest, ALivePositionIsDrawnOverALostOne) {
    showPage();
    std::deque<COverlayGPSPosition> positions(4); // some of them above others in memory
    for (COverlayGPSPosition& each : positions) {
        each.latitude = test::positionOf(120, 90).latitude;
        each.longitude = test::positionOf(120, 90).longitude;
        each.fixType = kFixGps;
        each.publish();
    }
    const COverlayMark& mark = marks.add(test::positionOf(120, 90), {});
    for (COverlayGPSPosition& live : positions) {
        for (COverlayGPSPosition& each : positions) {
            each.fixType = &each == &live ? kFixGps : kFixNone;
            each.publish();
        }
        EXPECT_TRUE(showsPositionAt(120, 90, live.icon()));
    }
    positions.clear();
    marks.remove(mark);
}

TEST_F(MarksOnMapsTest, AnotherLengthOfTheArrowIsShownAtOnce) {
    showPage();
    COverlayGPSPosition position;
    position.latitude = test::positionOf(120, 190).latitude;
    position.longitude = test::positionOf(120, 190).longitude;
    position.fixType = kFixGps;
    position.speed = 360;
    position.publish();
    EXPECT_EQ(at(120, 160), QColor(255, 0, 0));
    EXPECT_EQ(at(120, 100), QColor(0, 128, 0));
    COverlayGPSPosition::setVectorScale(10);
    EXPECT_EQ(at(120, 100), QColor(255, 0, 0));
    COverlayGPSPosition::setVectorScale(0);
    EXPECT_EQ(at(120, 160), QColor(0, 128, 0));
    COverlayGPSPosition::setVectorScale(COverlayGPSPosition::kUsualVectorScale);
}

} // namespace
} // namespace raincast
