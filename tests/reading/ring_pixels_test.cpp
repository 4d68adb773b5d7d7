// SPDX-License-Identifier: MIT
#include "reading/map_line.h"
#include "reading/ring_pixels.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace raincast {
namespace {

constexpr QRgb kSea = 0xFF2050A0;

QImage sea() {
    QImage picture(240, 320, QImage::Format_RGB32);
    picture.fill(kSea);
    return picture;
}

QImage asThePainterHasThem(const RingPixels::Rings& rings, const QRect& area, QPoint place) {
    QImage picture = sea();
    QPainter painter(&picture);
    painter.setClipRect(area);
    for (int ring = 1; ring <= rings.count; ++ring) {
        drawMapEllipse(painter, place, ring * rings.width, ring * rings.height);
    }
    return picture;
}

// The painter itself puts a pixel here or there, as a ring lies in its picture.
constexpr int kChance = 8;

int differing(const QImage& one, const QImage& other) {
    int count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            count += one.pixel(x, y) != other.pixel(x, y) ? 1 : 0;
        }
    }
    return count;
}

TEST(RingPixelsTest, AreThoseOfThePainter) {
    const RingPixels::Rings rings{41.37, 33.19, 5};
    // In the area, and so that its middle lies beside each edge of it.
    for (const QPoint place :
         {QPoint(120, 160), QPoint(-30, 100), QPoint(300, 100), QPoint(100, -40), QPoint(100, 400),
          QPoint(5000, 5000)}) {
        for (const QRect area : {QRect(0, 0, 240, 320), QRect(10, 20, 200, 130)}) {
            QImage picture = sea();
            RingPixels::kept(rings).draw(picture, area, place);
            EXPECT_LE(differing(picture, asThePainterHasThem(rings, area, place)), kChance)
                << place.x() << ' ' << place.y() << ' ' << area.width();
        }
    }
}

TEST(RingPixelsTest, OtherRingsAreNotTakenForThoseThatAreKept) {
    const RingPixels::Rings all[] = {{40, 40, 2}, {40, 40, 3}, {40, 41, 3}, {39, 41, 3}};
    for (const RingPixels::Rings& rings : all) {
        QImage picture = sea();
        RingPixels::kept(rings).draw(picture, picture.rect(), {120, 160});
        EXPECT_LE(
            differing(picture, asThePainterHasThem(rings, picture.rect(), {120, 160})), kChance
        );
    }
}

TEST(RingPixelsTest, NothingIsDrawnBesideThePicture) {
    QImage picture = sea();
    RingPixels::kept({500, 500, 3}).draw(picture, {-1000, -1000, 5000, 5000}, {120, 160});
    EXPECT_EQ(picture, sea());
}

} // namespace
} // namespace raincast
