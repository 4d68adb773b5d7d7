// SPDX-License-Identifier: MIT
#pragma once

#include "maps/map_line.h"
#include "radar/catalogue/image_geometry.h"

#include <QColor>
#include <QImage>
#include <QPolygonF>

#include <vector>

namespace raincast {

/// Where a layer's picture lies on the earth.
class LayerPlace {
public:
    explicit LayerPlace(const ImageGeometry& geometry) : m_geometry(geometry) {}

    /// The part of the earth that the picture shows, and a little around it.
    [[nodiscard]] GeoBox box() const;

    /// Painter coordinates: the centre of pixel (0, 0) is (0.5, 0.5).
    [[nodiscard]] QPointF at(GeoPosition position) const;
    [[nodiscard]] QPolygonF at(const std::vector<GeoPosition>& points) const;

    [[nodiscard]] const ImageGeometry& geometry() const { return m_geometry; }

private:
    ImageGeometry m_geometry;
};

/// The picture of a layer while it is painted: of its geometry's size, empty at first.
class LayerCanvas : public LayerPlace {
public:
    explicit LayerCanvas(const ImageGeometry& geometry);

    /// Strokes lines without smoothing: a GIF's pixels are either there or not. `width` in pixels.
    void stroke(const std::vector<QPolygonF>& lines, QColor colour, double width);

    [[nodiscard]] QImage& image() { return m_image; }

private:
    QImage m_image;
};

} // namespace raincast
