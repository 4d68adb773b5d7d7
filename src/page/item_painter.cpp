// SPDX-License-Identifier: MIT
#include "page/item_painter.h"

#include "page/edge_painter.h"
#include "page/item.h"

#include <QPainter>

namespace raincast {

namespace {

constexpr QRgb kSelected = qRgb(200, 0, 0);
constexpr QRgb kNotSelected = qRgb(0, 200, 0);

// 0x00BBGGRR, as placements hold colours.
QColor fromStored(std::int32_t colour) {
    return {colour & 0xFF, colour >> 8 & 0xFF, colour >> 16 & 0xFF};
}

} // namespace

void paintItem(QPainter& painter, CPageDisplay::CItem& item, const QPalette& palette) {
    const ItemPlacement& placement = item.placement();
    const QRect frame = placement.frame().toRect();
    if (placement.fillColour != ItemPlacement::kNone) {
        painter.fillRect(frame & painter.viewport(), fromStored(placement.fillColour));
    }
    if (!item.rectangle().isEmpty()) {
        painter.save();
        if (placement.clip != 0) {
            painter.setClipRect(item.rectangle().toRect(), Qt::IntersectClip);
        }
        item.draw(painter);
        painter.restore();
    }
    if (placement.edgeStyle != ItemPlacement::kNone) {
        drawEdge(painter, frame, placement.edgeStyle, palette);
    }
}

void paintLayoutMarks(QPainter& painter, const PageRectangle& item, bool selected, int gripSize) {
    painter.setPen(QColor(selected ? kSelected : kNotSelected));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(item.toRect().adjusted(0, 0, -1, -1));
    const QPoint corner(item.right - 2, item.bottom - 3);
    for (const int length : {gripSize, gripSize / 2}) {
        painter.drawLine(corner - QPoint(length, 0), corner - QPoint(0, length));
    }
}

} // namespace raincast
