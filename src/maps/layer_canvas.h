// SPDX-License-Identifier: MIT
#pragma once

#include "maps/map_line.h"
#include "radar/catalogue/image_geometry.h"

#include <QColor>
#include <QImage>
#include <QPolygonF>

#include <vector>

namespace raincast {

/// The picture of a layer while it is painted: 600 × 550 pixels, empty at first, and their place on
/// the earth.
class LayerCanvas {
public:
    explicit LayerCanvas(const ImageGeometry& geometry);

    /// The part of the earth that the picture shows, and a little around it.
    [[nodiscard]] GeoBox box() const;

    /// Painter coordinates: the centre of pixel (0, 0) is (0.5, 0.5).
    [[nodiscard]] QPointF at(GeoPosition position) const;
    [[nodiscard]] QPolygonF at(const std::vector<GeoPosition>& points) const;

    /// Strokes lines without smoothing: a GIF's pixels are either there or not.
    void stroke(const std::vector<QPolygonF>& lines, QColor colour, double width);

    [[nodiscard]] QImage& image() { return m_image; }
    [[nodiscard]] const ImageGeometry& geometry() const { return m_geometry; }

private:
    ImageGeometry m_geometry;
    QImage m_image;
};

} // namespace raincast
