// SPDX-License-Identifier: MIT
#pragma once

#include "maps/layer_canvas.h"

#include <vector>

namespace raincast {

/// Draws lines as the layers do, within a picture of some site.
inline void drawMapLines(const std::vector<MapLine>& lines) {
    static LayerCanvas canvas(ImageGeometry(35, -97, Range::shortRange));
    std::vector<QPolygonF> polygons;
    for (const MapLine& line : lines) {
        if (boxAround(line.points).overlaps(canvas.box())) {
            polygons.push_back(canvas.at(line.points));
        }
    }
    canvas.stroke(polygons, Qt::black, 2);
}

} // namespace raincast
