// SPDX-License-Identifier: MIT
#include "reading/map_line.h"

#include <QPainter>
#include <QPoint>

namespace raincast {

namespace {

constexpr int kWhiteWidth = 3;
constexpr int kCrossArm = 7;

template<typename Draw>
void drawTwice(QPainter& painter, Draw draw) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, kWhiteWidth));
    draw();
    painter.setPen(QPen(Qt::black, 1));
    draw();
}

} // namespace

void drawMapLine(QPainter& painter, QPoint from, QPoint to) {
    drawTwice(painter, [&] { painter.drawLine(from, to); });
}

void drawMapEllipse(QPainter& painter, QPoint middle, double width, double height) {
    drawTwice(painter, [&] { painter.drawEllipse(QPointF(middle), width, height); });
}

void drawMapCross(QPainter& painter, QPoint place) {
    drawMapLine(painter, place - QPoint(kCrossArm, 0), place + QPoint(kCrossArm, 0));
    drawMapLine(painter, place - QPoint(0, kCrossArm), place + QPoint(0, kCrossArm));
}

} // namespace raincast
