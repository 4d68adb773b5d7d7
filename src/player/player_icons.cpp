// SPDX-License-Identifier: MIT
#include "player/player_icons.h"

#include "page/painted_icon.h"

#include <QPainter>

namespace raincast {

namespace {

void fill(QPainter& painter, const QColor& ink) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
}

void drawPlay(QPainter& painter, const QColor& ink) {
    fill(painter, ink);
    painter.drawPolygon(QPolygonF{{6, 3}, {21, 12}, {6, 21}});
}

void drawPause(QPainter& painter, const QColor& ink) {
    fill(painter, ink);
    painter.drawRect(QRectF(5, 4, 5, 16));
    painter.drawRect(QRectF(14, 4, 5, 16));
}

void drawStepBack(QPainter& painter, const QColor& ink) {
    fill(painter, ink);
    painter.drawRect(QRectF(4, 5, 3, 14));
    painter.drawPolygon(QPolygonF{{20, 5}, {9, 12}, {20, 19}});
}

void drawStepForward(QPainter& painter, const QColor& ink) {
    fill(painter, ink);
    painter.drawRect(QRectF(17, 5, 3, 14));
    painter.drawPolygon(QPolygonF{{4, 5}, {15, 12}, {4, 19}});
}

} // namespace

QIcon playIcon() {
    return paintedIcon(drawPlay);
}

QIcon pauseIcon() {
    return paintedIcon(drawPause);
}

QIcon stepBackIcon() {
    return paintedIcon(drawStepBack);
}

QIcon stepForwardIcon() {
    return paintedIcon(drawStepForward);
}

} // namespace raincast
