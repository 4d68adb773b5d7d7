// SPDX-License-Identifier: MIT
#include "map/map_icon.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <map>
#include <utility>

namespace raincast {

namespace {

constexpr QColor kHalo(255, 255, 240);
constexpr QColor kInk(0, 0, 0);
constexpr QColor kPositionBlue(30, 90, 220);
constexpr QColor kMarkViolet(120, 30, 150);

// Shapes are drawn in units of a small icon's pixels, around the position.
void drawOutlined(QPainter& painter, const QPainterPath& shape, const QColor& fill) {
    painter.strokePath(shape, QPen(kHalo, 3.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(shape, fill);
    painter.strokePath(shape, QPen(kInk, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

QPainterPath disc(QPointF centre, double radius) {
    QPainterPath path;
    path.addEllipse(centre, radius, radius);
    return path;
}

// A dark disc with a light heart...
void drawFixA(QPainter& painter) {
    drawOutlined(painter, disc({0, 0}, 6), kPositionBlue);
    painter.fillPath(disc({0, 0}, 2), kHalo);
}

// ... and a light one with a dark heart: a position that comes in blinks.
void drawFixB(QPainter& painter) {
    drawOutlined(painter, disc({0, 0}, 6), kHalo);
    painter.fillPath(disc({0, 0}, 3), kPositionBlue);
}

// A question mark in a square on its corner: the user was here, and may be elsewhere.
void drawNoFix(QPainter& painter) {
    QPainterPath square;
    square.addPolygon(QPolygonF({{0, -6.1}, {6.1, 0}, {0, 6.1}, {-6.1, 0}}));
    square.closeSubpath();
    drawOutlined(painter, square, QColor(225, 225, 225));
    QPainterPath question;
    question.arcMoveTo(QRectF(-1.8, -3.6, 3.6, 3.6), 170);
    question.arcTo(QRectF(-1.8, -3.6, 3.6, 3.6), 170, -240);
    question.lineTo(0, 1);
    painter.strokePath(question, QPen(kInk, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(disc({0, 3.2}, 0.9), kInk);
}

// A pin, its tip in the middle of pixel (7, 25).
void drawMark(QPainter& painter) {
    QPainterPath pin({7.5, 25.5});
    pin.cubicTo(7.0, 17.5, 2.0, 13.5, 2.0, 7.5);
    pin.arcTo(QRectF(2.0, 2.0, 11, 11), 180, -180);
    pin.cubicTo(13.0, 13.5, 8.0, 17.5, 7.5, 25.5);
    pin.closeSubpath();
    drawOutlined(painter, pin, kMarkViolet);
    painter.fillPath(disc({7.5, 7.5}, 2.4), kHalo);
}

QImage blank(int width, int height) {
    QImage picture(width, height, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    return picture;
}

QImage positionPicture(MapIcon icon, bool large) {
    const int extent = positionPictureExtent(large);
    const double scale = large ? 2 : 1;
    QImage picture = blank(extent, extent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(extent / 2.0, extent / 2.0);
    painter.scale(scale, scale);
    const auto draw = icon == MapIcon::fixA   ? drawFixA
                      : icon == MapIcon::fixB ? drawFixB
                                              : drawNoFix;
    draw(painter);
    return picture;
}

QImage markPicture() {
    QImage picture = blank(15, 28);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    drawMark(painter);
    return picture;
}

} // namespace

const QImage& mapIconPicture(MapIcon icon, bool large) {
    static std::map<std::pair<MapIcon, bool>, QImage> pictures;
    QImage& picture = pictures[{icon, large}];
    if (picture.isNull()) {
        picture = icon == MapIcon::mark ? markPicture() : positionPicture(icon, large);
    }
    return picture;
}

} // namespace raincast
