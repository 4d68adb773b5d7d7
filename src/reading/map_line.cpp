// SPDX-License-Identifier: MIT
#include "reading/map_line.h"

#include <QPainter>
#include <QPoint>

namespace raincast {

namespace {

constexpr int kCrossArm = 7;

} // namespace

// Lines of one pixel are drawn many times as fast as wider ones.
void drawMapLine(QPainter& painter, QPoint from, QPoint to) {
    painter.setPen(Qt::white);
    for (const QPoint& beside : {QPoint(-1, 0), QPoint(1, 0), QPoint(0, -1), QPoint(0, 1)}) {
        painter.drawLine(from + beside, to + beside);
    }
    painter.setPen(Qt::black);
    painter.drawLine(from, to);
}

void drawMapEllipse(QPainter& painter, QPoint middle, double width, double height) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(Qt::white);
    painter.drawEllipse(QPointF(middle), width + 1, height + 1);
    painter.setPen(Qt::black);
    painter.drawEllipse(QPointF(middle), width, height);
}

void drawMapCross(QPainter& painter, QPoint place) {
    drawMapLine(painter, place - QPoint(kCrossArm, 0), place + QPoint(kCrossArm, 0));
    drawMapLine(painter, place - QPoint(0, kCrossArm), place + QPoint(0, kCrossArm));
}

} // namespace raincast
