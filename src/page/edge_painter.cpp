// SPDX-License-Identifier: MIT
#include "page/edge_painter.h"

#include "page/item_placement.h"

#include <QPainter>
#include <QPalette>

namespace raincast {

namespace {

struct Ring {
    int style;
    QPalette::ColorRole topLeft;
    QPalette::ColorRole bottomRight;
};

constexpr Ring kRings[] = {
    {raisedOuter, QPalette::Midlight, QPalette::Shadow},
    {sunkenOuter, QPalette::Dark, QPalette::Light},
    {raisedInner, QPalette::Light, QPalette::Dark},
    {sunkenInner, QPalette::Shadow, QPalette::Midlight},
};

const Ring* ringOf(int style) {
    for (const Ring& ring : kRings) {
        if (ring.style == style) {
            return &ring;
        }
    }
    return nullptr; // neither raised nor sunken, or both
}

void drawRing(QPainter& painter, const QRect& place, const Ring& ring, const QPalette& palette) {
    if (place.isEmpty()) {
        return;
    }
    painter.setPen(palette.color(ring.topLeft));
    painter.drawLine(place.topLeft(), place.topRight());
    painter.drawLine(place.topLeft(), place.bottomLeft());
    // Last: the two corners where they meet are in the shade.
    painter.setPen(palette.color(ring.bottomRight));
    painter.drawLine(place.bottomLeft(), place.bottomRight());
    painter.drawLine(place.topRight(), place.bottomRight());
}

} // namespace

void drawEdge(QPainter& painter, const QRect& rectangle, int style, const QPalette& palette) {
    QRect place = rectangle;
    for (const int both : {raisedOuter | sunkenOuter, raisedInner | sunkenInner}) {
        if (const Ring* const ring = ringOf(style & both)) {
            drawRing(painter, place, *ring, palette);
            place.adjust(1, 1, -1, -1);
        }
    }
}

} // namespace raincast
