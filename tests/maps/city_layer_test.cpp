// SPDX-License-Identifier: MIT
#include "maps/city_layer.h"
#include "needs_gui.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

const ImageGeometry kGeometry(38.5, -77.5, Range::shortRange);

class CityLayerTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { needGui(); }

    static City city(const char* name, double column, double row) {
        return {name, 1, {kGeometry.latitudeOfRow(row), kGeometry.longitudeOfColumn(column)}};
    }
    static QImage draw(const std::vector<City>& cities, int most = 10) {
        LayerCanvas canvas(kGeometry);
        drawCities(canvas, cities, most);
        return canvas.image();
    }
    static bool isDark(const QImage& picture, int column, int row) {
        const QRgb pixel = picture.pixel(column, row);
        return qAlpha(pixel) == 255 && qGray(pixel) < 60;
    }
};

TEST_F(CityLayerTest, TheDotIsAtTheCity) {
    const QImage picture = draw({city("Town", 300, 200)});
    EXPECT_TRUE(isDark(picture, 300, 200));
    EXPECT_FALSE(isDark(picture, 300, 230));
}

TEST_F(CityLayerTest, TheFirstHaveTheirPlaces) {
    // The second has no room: its dot would lie on the first one's name.
    const QImage picture = draw({city("Important", 300, 200), city("Other", 330, 200)});
    const QImage alone = draw({city("Important", 300, 200)});
    EXPECT_EQ(picture, alone);
}

TEST_F(CityLayerTest, NamesMoveToTheOtherSideAtTheEdge) {
    const QImage picture = draw({city("Eastern place", 580, 200)});
    EXPECT_TRUE(isDark(picture, 580, 200));
    bool isWest = false;
    for (int column = 490; column < 570; ++column) {
        isWest = isWest || isDark(picture, column, 200);
    }
    EXPECT_TRUE(isWest);
}

TEST_F(CityLayerTest, ThereAreNoMoreThanAsked) {
    const QImage picture = draw({city("A", 100, 100), city("B", 200, 300)}, 1);
    EXPECT_TRUE(isDark(picture, 100, 100));
    EXPECT_FALSE(isDark(picture, 200, 300));
}

TEST_F(CityLayerTest, TheCornerOfTheTimeStaysFree) {
    EXPECT_FALSE(isDark(draw({city("A", 20, 535)}), 20, 535));
}

TEST_F(CityLayerTest, NothingIsWhite) {
    const QImage picture = draw({city("Town", 300, 200)});
    for (int row = 180; row < 220; ++row) {
        for (int column = 280; column < 400; ++column) {
            EXPECT_NE(picture.pixel(column, row), 0xFFFF'FFFF);
        }
    }
}

} // namespace
} // namespace raincast
