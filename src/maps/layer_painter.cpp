// SPDX-License-Identifier: MIT
#include "maps/layer_painter.h"

#include "maps/city_layer.h"
#include "maps/layer_canvas.h"
#include "maps/layer_gif.h"
#include "maps/map_data.h"
#include "maps/topo_layer.h"

#include <QBuffer>

#include <functional>

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

/// Draws what has been looked up, as often as it is called.
using Drawing = std::function<void(LayerCanvas&)>;

/// The lines whose rank lies between two, as painter coordinates.
std::vector<QPolygonF>
linesOfRank(const LayerPlace& place, const std::vector<MapLine>& lines, int least, int most) {
    std::vector<QPolygonF> result;
    for (const MapLine& line : lines) {
        if (least <= line.rank && line.rank <= most) {
            result.push_back(place.at(line.points));
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

Drawing riverDrawing(const LayerPlace& place, const MapData& data, Range range) {
    std::vector<QPolygonF> shores;
    for (const ShoreBin& bin : data.shores(place.box())) {
        for (const ShorePiece& piece : bin.pieces) {
            shores.push_back(place.at(piece.points));
        }
    }
    const int least = leastRiver(range, place.geometry().detail());
    return [shores = std::move(shores),
            rivers = linesOfRank(place, data.rivers(place.box()), 0, least)](LayerCanvas& canvas) {
        canvas.stroke(rivers, kRiver, 1);
        canvas.stroke(shores, kShore, 1);
    };
}

Drawing borderDrawing(const LayerPlace& place, const MapData& data) {
    const auto borders = data.borders(place.box());
    return [counties = linesOfRank(place, borders, 1, 1),
            states = linesOfRank(place, borders, 0, 0)](LayerCanvas& canvas) {
        canvas.stroke(counties, kCounty, 1);
        canvas.stroke(states, kStateRim, 3);
        canvas.stroke(states, kState, 1);
    };
}

Drawing roadDrawing(const LayerPlace& place, const MapData& data) {
    return [roads = linesOfRank(place, data.roads(place.box()), 0, 0)](LayerCanvas& canvas) {
        canvas.stroke(roads, kRoad, 2);
    };
}

Drawing drawingOf(LayerKind layer, const LayerPlace& place, const MapData& data, Range range) {
    switch (layer) {
    case LayerKind::rivers:
        return riverDrawing(place, data, range);
    case LayerKind::counties:
        return borderDrawing(place, data);
    case LayerKind::highways:
        return roadDrawing(place, data);
    default:
        return cityDrawing(place, data.cities(place.box()), kCityCount);
    }
}

} // namespace

std::optional<QByteArray>
paintLayer(LayerKind layer, const MapData& data, const ImageGeometry& geometry, Range range) {
    if (layer == LayerKind::topo) {
        return jpegOf(paintTopo(data, geometry));
    }
    const Drawing drawing = drawingOf(layer, LayerPlace(geometry), data, range);
    return layerGif(geometry.detail(), [&](int top) {
        LayerCanvas band(geometry, top);
        drawing(band);
        return band.image();
    });
}

} // namespace raincast
