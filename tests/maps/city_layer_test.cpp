// SPDX-License-Identifier: MIT
#include "maps/city_layer.h"
#include "needs_gui.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>
#include <random>

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
        cityDrawing(canvas, cities, most)(canvas);
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

/// The same place of the earth as kGeometry, with more pixels.
ImageGeometry sharpGeometry(int detail) {
    return {38.5, -77.5, Range::shortRange, detail};
}

TEST_F(CityLayerTest, InASharpPictureTheDotIsAtTheCity) {
    for (const int detail : {2, 4}) {
        const ImageGeometry geometry = sharpGeometry(detail);
        const City town = city("Town", 301.3, 200.6);
        LayerCanvas canvas(geometry);
        cityDrawing(canvas, {town}, 10)(canvas);
        const int column = qRound(geometry.columnOfLongitude(town.position.longitude));
        const int row = qRound(geometry.rowOfLatitude(town.position.latitude));
        EXPECT_EQ(canvas.image().size(), QSize(600, 550) * detail);
        EXPECT_TRUE(isDark(canvas.image(), column, row));
        EXPECT_FALSE(isDark(canvas.image(), column - 3, row)) << "the dot is as small";
        EXPECT_FALSE(isDark(canvas.image(), column, row - 3));
    }
}

TEST_F(CityLayerTest, TheCornerOfTheTimeGrowsWithThePicture) {
    for (const int detail : {2, 4}) {
        LayerCanvas canvas(sharpGeometry(detail));
        cityDrawing(canvas, {city("A", 90, 535)}, 10)(canvas);
        EXPECT_FALSE(isDark(canvas.image(), 90 * detail + detail / 2, 535 * detail + detail / 2));
    }
}

/// Towns that are too close for all their names, the largest first.
class CrowdedCitiesTest : public CityLayerTest {
protected:
    CrowdedCitiesTest() {
        std::minstd_rand random(7);
        const auto below = [&](unsigned most) { return static_cast<double>(random() % most); };
        for (int i = 0; i < 250; ++i) {
            QString name(QChar('A' + i % 26));
            for (int j = 4 + static_cast<int>(below(5)); j > 0; --j) {
                name += QChar('a' + static_cast<int>(below(26)));
            }
            const double column = 150 + below(2000) / 10;
            m_cities.push_back(city(qPrintable(name), column, 150 + below(1500) / 10));
            m_cities.back().name = name;
        }
    }

    [[nodiscard]] QImage picture(int detail, int most = 1000) const {
        LayerCanvas canvas(sharpGeometry(detail));
        cityDrawing(canvas, m_cities, most)(canvas);
        return canvas.image();
    }
    static QPoint dotOf(const City& city, int detail) {
        const ImageGeometry geometry = sharpGeometry(detail);
        return {
            static_cast<int>(geometry.columnOfLongitude(city.position.longitude) + .5),
            static_cast<int>(geometry.rowOfLatitude(city.position.latitude) + .5)};
    }
    /// The dark pixels of a name that has all the room it wants, from its dot.
    static std::vector<QPoint> inkOf(const City& city) {
        const QImage alone = draw({{city.name, 1, CityLayerTest::city("", 300, 200).position}});
        std::vector<QPoint> ink;
        for (int row = 180; row < 220; ++row) {
            for (int column = 304; column < 420; ++column) {
                if (isDark(alone, column, row)) {
                    ink.emplace_back(column - 300, row - 200);
                }
            }
        }
        return ink;
    }
    /// How far a city's name stands from where it would like to; nothing when it is not there.
    static std::optional<QPoint> placeOf(const City& city, const QImage& picture, int detail) {
        const QPoint dot = dotOf(city, detail);
        const auto ink = inkOf(city);
        for (int down = -20; down <= 20; ++down) {
            for (int across = -120; across <= 2; ++across) {
                const QPoint offset(across, down);
                const bool isThere = std::all_of(ink.begin(), ink.end(), [&](QPoint pixel) {
                    const QPoint at = dot + offset + pixel;
                    return picture.rect().contains(at) && isDark(picture, at.x(), at.y());
                });
                if (isThere) {
                    return offset;
                }
            }
        }
        return std::nullopt;
    }

    std::vector<City> m_cities;
};

TEST_F(CrowdedCitiesTest, ASharpPictureNamesTheSameAtTheSamePlacesAndMore) {
    const std::array pictures{picture(1), picture(2), picture(4)};
    std::array<int, 3> named{};
    for (const City& city : m_cities) {
        std::optional<QPoint> coarser;
        for (std::size_t i = 0; i < pictures.size(); ++i) {
            const auto place = placeOf(city, pictures[i], 1 << i);
            named[i] += place ? 1 : 0;
            if (coarser) {
                EXPECT_EQ(place, coarser) << qPrintable(city.name) << " at detail " << (1 << i);
            }
            coarser = place;
        }
    }
    EXPECT_GT(named[0], 10);
    EXPECT_GT(named[1], 2 * named[0]);
    EXPECT_GT(named[2], named[1] * 3 / 2);
}

TEST_F(CrowdedCitiesTest, BandsShowWhatTheWholePictureShows) {
    const ImageGeometry geometry = sharpGeometry(4);
    const auto draw = cityDrawing(LayerPlace(geometry), m_cities, 1000);
    LayerCanvas whole(geometry);
    draw(whole);
    const int rows = rowsOfBand(geometry);
    EXPECT_EQ(rows, 550);
    for (int top = 0; top < geometry.height(); top += rows) {
        LayerCanvas band(geometry, top);
        draw(band);
        EXPECT_EQ(band.part(), QRect(0, top, 2400, rows));
        EXPECT_EQ(band.image(), whole.image().copy(band.part())) << top;
    }
}

TEST_F(CrowdedCitiesTest, ThereAreFourTimesAsManyAtTwiceTheDetail) {
    const auto namedOf = [&](int detail, int most) {
        const QImage drawn = picture(detail, most);
        return std::count_if(m_cities.begin(), m_cities.end(), [&](const City& city) {
            return placeOf(city, drawn, detail).has_value();
        });
    };
    EXPECT_EQ(namedOf(1, 5), 5);
    EXPECT_EQ(namedOf(2, 5), 20);
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
