// SPDX-License-Identifier: MIT
#include "app/drawn_icon.h"

#include "page/painted_icon.h"

#include <QPainter>
#include <QPainterPath>

namespace raincast {

namespace {

// Icons are drawn on a square of this extent.
constexpr double kExtent = 24;

QPen stroke(const QColor& colour, double width) {
    return {colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void drawLens(QPainter& painter, const QColor& ink) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(stroke(ink, 2));
    painter.drawEllipse(QPointF(10, 10), 7, 7);
    painter.setPen(stroke(ink, 3.5));
    painter.drawLine(QPointF(16, 16), QPointF(21, 21));
    painter.setPen(stroke(ink, 2));
    painter.drawLine(QPointF(7, 10), QPointF(13, 10));
}

void drawZoomIn(QPainter& painter, const QColor& ink) {
    drawLens(painter, ink);
    painter.drawLine(QPointF(10, 7), QPointF(10, 13));
}

// Two arrows that chase each other around.
void drawUpdate(QPainter& painter, const QColor& ink) {
    const QRectF circle(4, 4, 16, 16);
    for (int half = 0; half < 2; ++half) {
        painter.setPen(stroke(ink, 2.2));
        painter.setBrush(Qt::NoBrush);
        painter.drawArc(circle, 35 * 16, 115 * 16);
        painter.setPen(stroke(ink, 1));
        painter.setBrush(ink);
        painter.drawPolygon(QPolygonF{{21.5, 3.5}, {21.5, 10}, {15.2, 8.2}});
        painter.translate(kExtent, kExtent);
        painter.rotate(180);
    }
}

void drawStop(QPainter& painter, const QColor& ink) {
    painter.setPen(stroke(ink, 2));
    painter.setBrush(ink);
    painter.drawRect(QRectF(6, 6, 12, 12));
}

void drawRaindrop(QPainter& painter, const QPointF& tip, double size) {
    QPainterPath drop(tip);
    drop.cubicTo(
        tip + QPointF(size, size * 1.3), tip + QPointF(size * 0.8, size * 2.4),
        tip + QPointF(0, size * 2.4)
    );
    drop.cubicTo(tip + QPointF(-size * 0.8, size * 2.4), tip + QPointF(-size, size * 1.3), tip);
    painter.drawPath(drop);
}

void drawProgram(QPainter& painter, const QColor& /*ink*/) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x12, 0x34, 0x56));
    painter.drawRoundedRect(QRectF(0.5, 0.5, 23, 23), 4, 4);
    painter.setBrush(QColor(0x2e, 0x9e, 0x5b, 0xb0));
    painter.drawPie(QRectF(3, 3, 18, 18), 20 * 16, 55 * 16);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(stroke(QColor(0x7c, 0xd6, 0x9c), 1));
    for (const double radius : {3.0, 6.0, 9.0}) {
        painter.drawEllipse(QPointF(12, 12), radius, radius);
    }
    painter.setPen(stroke(QColor(0xc9, 0xf7, 0xd8), 1.4));
    painter.drawLine(QPointF(12, 12), QPointF(14.4, 3.4));
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x6f, 0xb7, 0xff));
    drawRaindrop(painter, {7.6, 12.2}, 1.9);
    drawRaindrop(painter, {13.2, 14.4}, 1.9);
    drawRaindrop(painter, {17.6, 10.8}, 1.5);
}

} // namespace

QIcon zoomInIcon() {
    return paintedIcon(drawZoomIn);
}

QIcon zoomOutIcon() {
    return paintedIcon(drawLens);
}

QIcon updateIcon() {
    return paintedIcon(drawUpdate);
}

QIcon stopIcon() {
    return paintedIcon(drawStop);
}

QIcon programIcon() {
    return paintedIcon(drawProgram);
}

} // namespace raincast
