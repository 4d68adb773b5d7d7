// SPDX-License-Identifier: MIT
#include "maps/layer_canvas.h"

#include <QPainter>

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

LayerCanvas::LayerCanvas(const ImageGeometry& geometry)
    : LayerPlace(geometry),
      m_image(geometry.width(), geometry.height(), QImage::Format_ARGB32_Premultiplied) {
    m_image.fill(Qt::transparent);
}

void LayerCanvas::stroke(const std::vector<QPolygonF>& lines, QColor colour, double width) {
    QPainter painter(&m_image);
    painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    for (const QPolygonF& line : lines) {
        painter.drawPolyline(line);
    }
}

} // namespace raincast
