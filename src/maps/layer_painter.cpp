// SPDX-License-Identifier: MIT
#include "maps/layer_painter.h"

#include "maps/city_layer.h"
#include "maps/layer_canvas.h"
#include "maps/layer_gif.h"
#include "maps/map_data.h"
#include "maps/topo_layer.h"

#include <QBuffer>

namespace raincast {

namespace {

constexpr int kJpegQuality = 88;

// Seen on black, on the topo's colours and on echoes alike.
constexpr QColor kRiver(52, 128, 190);
constexpr QColor kShore(92, 132, 160);
constexpr QColor kCounty(112, 116, 122);
constexpr QColor kState(44, 48, 56);
constexpr QColor kStateRim(232, 230, 220);
constexpr QColor kRoad(150, 58, 44);

constexpr int kCityCount = 44;

std::optional<QByteArray> jpegOf(const QImage& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    const bool written =
        buffer.open(QIODevice::WriteOnly) && picture.save(&buffer, "JPG", kJpegQuality);
    return written ? std::optional(bytes) : std::nullopt;
}

/// The lines whose rank lies between two, as painter coordinates.
std::vector<QPolygonF>
linesOfRank(const LayerCanvas& canvas, const std::vector<MapLine>& lines, int least, int most) {
    std::vector<QPolygonF> result;
    for (const MapLine& line : lines) {
        if (least <= line.rank && line.rank <= most) {
            result.push_back(canvas.at(line.points));
        }
    }
    return result;
}

/// The rank of the least rivers that a picture has room for: what a pixel covers decides.
int leastRiver(Range range, int detail) {
    constexpr int kLongest = 2; // the largest rivers
    constexpr int kAll = 4;     // all that have water at all times
    constexpr int kWithDry = 7; // those that fall dry, too
    const int fineness = range == Range::shortRange ? 2 * detail : detail;
    return fineness < 2 ? kLongest : fineness < 8 ? kAll : kWithDry;
}

void drawRivers(LayerCanvas& canvas, const MapData& data, Range range) {
    std::vector<QPolygonF> shores;
    for (const ShoreBin& bin : data.shores(canvas.box())) {
        for (const ShorePiece& piece : bin.pieces) {
            shores.push_back(canvas.at(piece.points));
        }
    }
    const int least = leastRiver(range, canvas.geometry().detail());
    canvas.stroke(linesOfRank(canvas, data.rivers(canvas.box()), 0, least), kRiver, 1);
    canvas.stroke(shores, kShore, 1);
}

void drawBorders(LayerCanvas& canvas, const MapData& data) {
    const auto borders = data.borders(canvas.box());
    const auto states = linesOfRank(canvas, borders, 0, 0);
    canvas.stroke(linesOfRank(canvas, borders, 1, 1), kCounty, 1);
    canvas.stroke(states, kStateRim, 3);
    canvas.stroke(states, kState, 1);
}

} // namespace

std::optional<QByteArray>
paintLayer(LayerKind layer, const MapData& data, const ImageGeometry& geometry, Range range) {
    if (layer == LayerKind::topo) {
        return jpegOf(paintTopo(data, geometry));
    }
    LayerCanvas canvas(geometry);
    switch (layer) {
    case LayerKind::rivers:
        drawRivers(canvas, data, range);
        break;
    case LayerKind::counties:
        drawBorders(canvas, data);
        break;
    case LayerKind::highways:
        canvas.stroke(linesOfRank(canvas, data.roads(canvas.box()), 0, 0), kRoad, 2);
        break;
    default:
        drawCities(canvas, data.cities(canvas.box()), kCityCount);
    }
    return layerGif(canvas.image());
}

} // namespace raincast
