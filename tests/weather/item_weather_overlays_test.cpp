// SPDX-License-Identifier: MIT
// What lies over the radar (positions, marks) when the image below it changes, goes or stays away.
#include "geo/geo_reference.h"
#include "map/overlay_object.h"
#include "weather_page.h"

#include <QListWidget>

namespace raincast {
namespace {

using test::DialogScript;

const QColor kColour(200, 0, 200);

/// A square of 41 pixels around a place.
class Flag : public COverlayObject {
public:
    explicit Flag(GeoPosition place) : m_place(place) { announceChanged(); }

    void Layout(std::vector<ImagePixel>& outline, const GeoReference& geo) const override {
        outline = {geo.geoToPixelForDrawing(m_place).pixel};
    }
    void Draw(
        QPainter& painter, const ViewTransform& /*view*/, const std::vector<PagePoint>& outline
    ) override {
        painter.fillRect(outline[0].x - 20, outline[0].y - 20, 41, 41, kColour);
    }

private:
    GeoPosition m_place;
};

class ItemWeatherOverlaysTest : public test::WeatherPage {
protected:
    ItemWeatherOverlaysTest() { showSite(); }

    /// Around what is drawn of the flag; empty if nothing is.
    [[nodiscard]] QRect flagged() {
        const QImage picture = drawn();
        QRect place;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixelColor(x, y) == kColour) {
                    place |= QRect(x, y, 1, 1);
                }
            }
        }
        return place;
    }
};

TEST_F(ItemWeatherOverlaysTest, AfterALoadThatFailsNoneIsDrawn) {
    const Flag flag(m_item->centrePosition());
    EXPECT_EQ(flagged().size(), QSize(41, 41));
    m_server.serve("/ridge/Overlays/Cities/Short/LWX_City_Short.gfw", "", 404);
    chooseSite("Sterling");
    EXPECT_FALSE(m_item->placed());
    EXPECT_EQ(flagged(), QRect());
    chooseSite("San Fr");
    EXPECT_TRUE(m_item->placed());
    EXPECT_EQ(flagged().size(), QSize(41, 41));
}

TEST_F(ItemWeatherOverlaysTest, AWorldFileOfNonsensePlacesNone) {
    const Flag flag(m_item->centrePosition());
    m_server.serve("/ridge/Overlays/Cities/Short/DAX_City_Short.gfw", "<html>Log in</html>");
    chooseSite("Sacra");
    EXPECT_FALSE(m_item->placed());
    EXPECT_EQ(flagged(), QRect());
}

TEST_F(ItemWeatherOverlaysTest, AnotherSiteShowsTheSamePlaceAndWhatLiesThere) {
    for (int i = 0; i < 3; ++i) {
        m_item->keyDown(Qt::Key_Right);
        m_item->keyDown(Qt::Key_Up);
    }
    const GeoPosition centre = m_item->centrePosition();
    const Flag flag({centre.latitude - 0.3, centre.longitude + 0.4});
    const QRect place = flagged();
    ASSERT_EQ(place.size(), QSize(41, 41));
    publishLayers("DAX");
    publishFrames({"20190519_0558"}, "DAX");
    const ImagePixel before = m_item->centrePixel();
    chooseSite("Sacra");
    EXPECT_EQ(m_item->state().siteId, "DAX");
    EXPECT_NE(m_item->centrePixel(), before) << "its image lies elsewhere";
    EXPECT_NEAR(m_item->centrePosition().latitude, centre.latitude, 0.01);
    EXPECT_NEAR(m_item->centrePosition().longitude, centre.longitude, 0.01);
    EXPECT_NEAR(flagged().left(), place.left(), 1);
    EXPECT_NEAR(flagged().top(), place.top(), 1);
}

TEST_F(ItemWeatherOverlaysTest, ASiteThatDoesNotReachThePlaceShowsItsMiddle) {
    m_item->keyDown(Qt::Key_Right);
    m_item->follow();
    publishLayers("LWX");
    publishFrames({"20190519_0558"}, "LWX");
    chooseSite("Sterling");
    EXPECT_EQ(m_item->state().siteId, "LWX");
    EXPECT_EQ(m_item->centrePixel(), (ImagePixel{300, 275}));
    EXPECT_FALSE(m_item->following());
}

TEST_F(ItemWeatherOverlaysTest, TheyLieOverTheTexts) {
    const auto at = [this](int x, int y) {
        const ImagePixel pixel = m_item->view().toImage({x, y});
        return GeoPosition{39.6 - 0.009 * (pixel.row + 0.5), -124.6 + 0.009 * (pixel.column + 0.5)};
    };
    const Flag overTime(at(10, 270));
    EXPECT_EQ(drawn().copy(0, 255, 28, 25), [] {
        QImage all(28, 25, QImage::Format_RGB32);
        all.fill(kColour);
        return all;
    }()) << "the time's line, or the date's";
    m_server.serve(test::framesPath("MUX"), "", 503);
    update();
    ASSERT_NE(m_item->statusText(), QString());
    const Flag overStatus(at(150, 20));
    const QImage status = drawn().copy(135, 8, 30, 25);
    for (int x = 0; x < status.width(); ++x) {
        for (int y = 0; y < status.height(); ++y) {
            ASSERT_EQ(status.pixelColor(x, y), kColour) << x << ' ' << y;
        }
    }
}

} // namespace
} // namespace raincast
