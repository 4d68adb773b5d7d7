// SPDX-License-Identifier: MIT
#include "maps/road_file.h"

#include "core/whole_file.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <shapefil.h>

#include <memory>

namespace raincast {

namespace {

constexpr qint64 kMostBytes = 512LL * 1024 * 1024;
// Collections in collections: deeper than any real file.
constexpr int kDeepest = 16;

// {"type":"LineString","coordinates":[[-77.1,38.9],[-77.0,39.0,12.5]]}
void addLine(const QJsonArray& coordinates, std::vector<MapLine>& lines) {
    MapLine line;
    for (const QJsonValue& point : coordinates) {
        line.points.push_back({point[1].toDouble(), point[0].toDouble()});
    }
    if (line.points.size() > 1) {
        lines.push_back(std::move(line));
    }
}

void addLines(const QJsonObject& object, int depth, std::vector<MapLine>& lines) {
    const QString type = object[u"type"].toString();
    const QJsonArray coordinates = object[u"coordinates"].toArray();
    if (type == u"LineString") {
        addLine(coordinates, lines);
    } else if (type == u"MultiLineString") {
        for (const QJsonValue& part : coordinates) {
            addLine(part.toArray(), lines);
        }
    }
    if (depth == kDeepest) {
        return;
    }
    for (const auto& members : {object[u"features"], object[u"geometries"]}) {
        for (const QJsonValue& member : members.toArray()) {
            addLines(member.toObject(), depth + 1, lines);
        }
    }
    if (object[u"geometry"].isObject()) {
        addLines(object[u"geometry"].toObject(), depth + 1, lines);
    }
}

bool isLine(int shapeType) {
    return shapeType == SHPT_ARC || shapeType == SHPT_ARCZ || shapeType == SHPT_ARCM;
}

void addShape(const SHPObject& shape, std::vector<MapLine>& lines) {
    for (int part = 0; part < shape.nParts; ++part) {
        const int begin = shape.panPartStart[part];
        const int end = part + 1 < shape.nParts ? shape.panPartStart[part + 1] : shape.nVertices;
        MapLine line;
        for (int i = begin; i < end; ++i) {
            line.points.push_back({shape.padfY[i], shape.padfX[i]});
        }
        if (line.points.size() > 1) {
            lines.push_back(std::move(line));
        }
    }
}

std::vector<MapLine> readShapes(const QString& file) {
    const std::unique_ptr<SHPInfo, decltype(&SHPClose)> shapes(
        SHPOpen(QFile::encodeName(file).constData(), "rb"), SHPClose
    );
    std::vector<MapLine> lines;
    int count = 0;
    if (shapes) {
        SHPGetInfo(shapes.get(), &count, nullptr, nullptr, nullptr);
    }
    for (int i = 0; i < count; ++i) {
        const std::unique_ptr<SHPObject, decltype(&SHPDestroyObject)> shape(
            SHPReadObject(shapes.get(), i), SHPDestroyObject
        );
        if (shape && isLine(shape->nSHPType)) {
            addShape(*shape, lines);
        }
    }
    return lines;
}

} // namespace

std::vector<MapLine> readGeoJsonLines(const QByteArray& bytes) {
    std::vector<MapLine> lines;
    addLines(QJsonDocument::fromJson(bytes).object(), 0, lines);
    return lines;
}

std::vector<MapLine> readRoads(const QString& file) {
    if (file.endsWith(u".shp", Qt::CaseInsensitive)) {
        return readShapes(file);
    }
    const auto text = readWhole(file, kMostBytes);
    return text ? readGeoJsonLines(*text) : std::vector<MapLine>();
}

} // namespace raincast
