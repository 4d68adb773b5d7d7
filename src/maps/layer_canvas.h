// SPDX-License-Identifier: MIT
#pragma once

#include "maps/map_line.h"
#include "radar/catalogue/image_geometry.h"

#include <QColor>
#include <QImage>
#include <QPolygonF>
#include <QRect>

#include <functional>
#include <vector>

class QPainter;

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

/// How many rows of a layer's picture are painted at a time, from the top: a large picture in
/// bands, which take no more memory than a whole one of 1200 × 1100 pixels. The last may have
/// fewer.
[[nodiscard]] int rowsOfBand(const ImageGeometry& geometry);

/// The picture of a layer, or a band of it, while it is painted; empty at first. What is drawn has
/// its place in the whole picture, and what lies elsewhere is left out.
class LayerCanvas : public LayerPlace {
public:
    /// The whole picture.
    explicit LayerCanvas(const ImageGeometry& geometry);
    /// The band that begins with a row.
    LayerCanvas(const ImageGeometry& geometry, int top);

    /// Calls `draw` with a painter.
    void paint(const std::function<void(QPainter&)>& draw);

    /// Strokes lines without smoothing: a GIF's pixels are either there or not. `width` in pixels.
    void stroke(const std::vector<QPolygonF>& lines, QColor colour, double width);

    /// The rows and columns of the picture that are painted here.
    [[nodiscard]] QRect part() const { return {{0, m_top}, m_image.size()}; }
    [[nodiscard]] const QImage& image() const { return m_image; }

private:
    LayerCanvas(const ImageGeometry& geometry, int top, int rows);

    int m_top;
    QImage m_image;
};

} // namespace raincast
