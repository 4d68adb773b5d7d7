// SPDX-License-Identifier: MIT
#include "maps/layer_canvas.h"

#include <QPainter>

#include <algorithm>

namespace raincast {

GeoBox LayerPlace::box() const {
    constexpr double kMargin = 4;
    return {
        m_geometry.latitudeOfRow(m_geometry.height() + kMargin),
        m_geometry.longitudeOfColumn(-kMargin), m_geometry.latitudeOfRow(-kMargin),
        m_geometry.longitudeOfColumn(m_geometry.width() + kMargin)};
}

QPointF LayerPlace::at(GeoPosition position) const {
    return {
        m_geometry.columnOfLongitude(position.longitude) + 0.5,
        m_geometry.rowOfLatitude(position.latitude) + 0.5};
}

QPolygonF LayerPlace::at(const std::vector<GeoPosition>& points) const {
    QPolygonF result;
    result.reserve(static_cast<qsizetype>(points.size()));
    for (const GeoPosition& point : points) {
        result += at(point);
    }
    return result;
}

int rowsOfBand(const ImageGeometry& geometry) {
    constexpr int kMostPixels = 1200 * 1100;
    return std::min(kMostPixels / geometry.width(), geometry.height());
}

LayerCanvas::LayerCanvas(const ImageGeometry& geometry)
    : LayerCanvas(geometry, 0, geometry.height()) {}

LayerCanvas::LayerCanvas(const ImageGeometry& geometry, int top)
    : LayerCanvas(geometry, top, std::min(rowsOfBand(geometry), geometry.height() - top)) {}

LayerCanvas::LayerCanvas(const ImageGeometry& geometry, int top, int rows)
    : LayerPlace(geometry), m_top(top),
      m_image(geometry.width(), rows, QImage::Format_ARGB32_Premultiplied) {
    m_image.fill(Qt::transparent);
}

void LayerCanvas::paint(const std::function<void(QPainter&)>& draw) {
    QPainter painter(&m_image);
    painter.translate(0, -m_top);
    draw(painter);
}

void LayerCanvas::stroke(const std::vector<QPolygonF>& lines, QColor colour, double width) {
    paint([&](QPainter& painter) {
        painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        for (const QPolygonF& line : lines) {
            painter.drawPolyline(line);
        }
    });
}

} // namespace raincast
