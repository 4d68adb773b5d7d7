// SPDX-License-Identifier: MIT
#include "map/overlay_mark.h"

#include "geo/geo_reference.h"
#include "map/map_icon.h"
#include "persist/record_reader.h"
#include "persist/record_writer.h"

#include <QImage>
#include <QPainter>

#include <cmath>

namespace raincast {

namespace {

constexpr double kMostLatitude = 90;
constexpr double kMostLongitude = 360;
constexpr qsizetype kMostNameUnits = 1000;
// The name starts beside the pin's head.
constexpr QPoint kNamePlace(8, -18);
// Further out a radar's whole range is a few hundred pixels wide, and names would hide it.
constexpr int kMostZoomWithNames = 0;

} // namespace

const SerializableType<COverlayMark> COverlayMark::cType{kTypeOverlayMark};

COverlayMark::COverlayMark(const GeoPosition& position, const QString& text) {
    latitude = position.latitude;
    longitude = position.longitude;
    setName(text);
}

void COverlayMark::setName(const QString& text) {
    name = text.left(kMostNameUnits);
}

// The comparisons are false for not-a-number.
bool COverlayMark::isPlaced() const {
    return std::fabs(latitude) <= kMostLatitude && std::fabs(longitude) <= kMostLongitude;
}

void COverlayMark::Layout(std::vector<ImagePixel>& outline, const GeoReference& geoReference)
    const {
    outline.clear();
    const auto placed = geoReference.geoToPixelForDrawing(position());
    if (isPlaced() && placed.ok) {
        outline.push_back(placed.pixel);
    }
}

void COverlayMark::Draw(
    QPainter& painter, const ViewTransform& /*view*/, const std::vector<PagePoint>& outline
) {
    if (outline.empty()) {
        return;
    }
    const QPoint spot(outline[0].x, outline[0].y);
    painter.drawImage(spot - kHotSpot, mapIconPicture(MapIcon::mark, false));
}

std::optional<MapLabel>
COverlayMark::label(const ViewTransform& view, const std::vector<PagePoint>& outline) const {
    if (outline.empty() || view.zoom() > kMostZoomWithNames) {
        return std::nullopt;
    }
    return MapLabel{QPoint(outline[0].x, outline[0].y) + kNamePlace, name};
}

std::optional<MarkData> COverlayMark::dataFrom(CSerialReader& reader) {
    CRecordReader record(reader);
    MarkData data;
    record.string(data.name);
    const bool whole = record.value(data.latitude) == sizeof(double) &&
                       record.value(data.longitude) == sizeof(double);
    record.end();
    return whole ? std::optional(std::move(data)) : std::nullopt;
}

bool COverlayMark::Read(CSerialReader& reader) {
    auto data = dataFrom(reader);
    if (data) {
        static_cast<MarkData&>(*this) = std::move(*data);
    }
    return data.has_value();
}

bool COverlayMark::Write(CSerialWriter& writer) const {
    CRecordWriter record(writer);
    record.string(name);
    record.value(latitude);
    record.value(longitude);
    return record.end();
}

} // namespace raincast
