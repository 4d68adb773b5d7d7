// SPDX-License-Identifier: MIT
#include "map/follow_icon.h"

#include <QPainter>
#include <QPolygonF>

namespace raincast {

void drawFollowIcon(QPainter& painter, const QPoint& topLeft) {
    const QPolygonF arrow({{6.5, 1.5}, {11.5, 14}, {6.5, 11}, {1.5, 14}});
    painter.save();
    painter.translate(topLeft);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(255, 255, 240), 3));
    painter.drawPolygon(arrow);
    painter.setPen(QPen(Qt::black, 1));
    painter.setBrush(QColor(30, 90, 220));
    painter.drawPolygon(arrow);
    painter.restore();
}

} // namespace raincast
