// SPDX-License-Identifier: MIT
#include "map/map_icon.h"

#include <QColor>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>

namespace raincast {
namespace {

constexpr MapIcon kAll[] = {MapIcon::fixA, MapIcon::fixB, MapIcon::noFix, MapIcon::mark};
constexpr MapIcon kPositions[] = {MapIcon::fixA, MapIcon::fixB, MapIcon::noFix};

/// Colours of radar pictures and of maps.
const QColor kGrounds[] = {Qt::white,      Qt::black,      {0, 236, 236},  {0, 0, 246},
                           {0, 200, 0},    {255, 255, 0},  {255, 0, 0},    {192, 0, 0},
                           {255, 0, 255},  {153, 85, 201}, {104, 130, 96}, {150, 220, 242},
                           {200, 190, 150}};

QImage on(const QColor& ground, MapIcon icon, bool large) {
    const QImage& picture = mapIconPicture(icon, large);
    QImage image(picture.size(), QImage::Format_RGB32);
    image.fill(ground);
    QPainter(&image).drawImage(0, 0, picture);
    return image;
}

QRect inkOf(const QImage& picture) {
    QRect ink;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(picture.pixel(x, y)) > 0) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    return ink;
}

TEST(MapIconTest, PositionPicturesHaveTheirIconInTheMiddle) {
    for (const bool large : {false, true}) {
        const int extent = large ? 44 : 22;
        const int icon = large ? 32 : 16;
        ASSERT_EQ(positionPictureExtent(large), extent);
        const int edge = (extent - icon) / 2;
        for (const MapIcon each : kPositions) {
            const QImage& picture = mapIconPicture(each, large);
            ASSERT_EQ(picture.size(), QSize(extent, extent));
            const QRect ink = inkOf(picture);
            EXPECT_TRUE(QRect(edge, edge, icon, icon).contains(ink)) << static_cast<int>(each);
            EXPECT_GE(ink.width(), icon - 2);
            EXPECT_GE(ink.height(), icon - 2);
            EXPECT_NEAR(ink.left() + ink.right() + 1, extent, 1) << "the position lies under it";
            EXPECT_NEAR(ink.top() + ink.bottom() + 1, extent, 1);
        }
    }
}

TEST(MapIconTest, TheMarksTipIsOnTheSpot) {
    const QImage& picture = mapIconPicture(MapIcon::mark, false);
    EXPECT_EQ(&mapIconPicture(MapIcon::mark, true), &mapIconPicture(MapIcon::mark, true));
    EXPECT_EQ(mapIconPicture(MapIcon::mark, true), picture);
    ASSERT_TRUE(picture.rect().contains(7, 25));
    EXPECT_EQ(qAlpha(picture.pixel(7, 25)), 255);
    EXPECT_LT(qGray(picture.pixel(7, 25)), 60);
    const QImage below = picture.copy(0, 26, picture.width(), picture.height() - 26);
    for (int y = 0; y < below.height(); ++y) {
        for (int x = 0; x < below.width(); ++x) {
            const QRgb pixel = below.pixel(x, y);
            EXPECT_TRUE(qAlpha(pixel) == 0 || qGray(pixel) * 255 / qAlpha(pixel) > 60)
                << "only halo: " << x << "," << y;
        }
    }
}

// Many pixels far darker than the ground or far lighter, so that it is seen without colour.
TEST(MapIconTest, EveryIconStandsOutFromEveryGround) {
    for (const QColor& ground : kGrounds) {
        const int shade = qGray(ground.rgb());
        for (const MapIcon icon : kAll) {
            for (const bool large : {false, true}) {
                const QImage image = on(ground, icon, large);
                int different = 0;
                for (int y = 0; y < image.height(); ++y) {
                    for (int x = 0; x < image.width(); ++x) {
                        different += std::abs(qGray(image.pixel(x, y)) - shade) > 80 ? 1 : 0;
                    }
                }
                EXPECT_GT(different, large && icon != MapIcon::mark ? 200 : 50)
                    << qPrintable(ground.name()) << " " << static_cast<int>(icon);
            }
        }
    }
}

TEST(MapIconTest, IconsAreToldApartWithoutColour) {
    for (const bool large : {false, true}) {
        for (const MapIcon one : kPositions) {
            for (const MapIcon other : kPositions) {
                const QImage left = on(Qt::white, one, large);
                const QImage right = on(Qt::white, other, large);
                int different = 0;
                for (int y = 0; y < left.height(); ++y) {
                    for (int x = 0; x < left.width(); ++x) {
                        const int step = qGray(left.pixel(x, y)) - qGray(right.pixel(x, y));
                        different += std::abs(step) > 80 ? 1 : 0;
                    }
                }
                const int least = one == other ? 0 : large ? 120 : 30;
                EXPECT_GE(different, least) << static_cast<int>(one) << static_cast<int>(other);
                EXPECT_TRUE(one != other || different == 0);
            }
        }
    }
}

} // namespace
} // namespace raincast
