// SPDX-License-Identifier: MIT
#include "basemap/map_layer.h"

#include "radar/file_kinds.h"

#include <QStringBuilder>

#include <array>

namespace raincast {

namespace {

using Source = MapLayer::Source;
using Ground = MapLayer::Ground;

constexpr std::array<MapLayer, 5> kLayers = {{
    {&BasemapLayers::topo, "Topo", "jpg", kJpegFile, Source::radarServer, "Topo", Ground::topo,
     true},
    {&BasemapLayers::rivers, "Rivers", "gif", kGifFile, Source::radarServer, "Rivers",
     Ground::topoElseOverlay, true},
    {&BasemapLayers::counties, "County", "gif", kGifFile, Source::basemapServer, "",
     Ground::overlay, false},
    {&BasemapLayers::highways, "Highways", "gif", kGifFile, Source::radarServer, "Highways",
     Ground::overlay, false},
    {&BasemapLayers::cities, "City", "gif", kGifFile, Source::basemapServer, "", Ground::overlay,
     false},
}};

} // namespace

std::span<const MapLayer> mapLayers() {
    return kLayers;
}

QString fileNameOf(const MapLayer& layer, const QString& siteId, QStringView range) {
    return siteId % u'_' % QLatin1String(layer.word) % u'_' % range % u'.' %
           QLatin1String(layer.extension);
}

QString serverPathOf(const MapLayer& layer, const QString& siteId, QStringView range) {
    const QString name = fileNameOf(layer, siteId, range);
    if (layer.source == Source::basemapServer) {
        return QStringLiteral("/weather_radar/basemaps/") % name;
    }
    return u"/ridge/Overlays/" % QLatin1String(layer.folder) % u'/' % range % u'/' % name;
}

} // namespace raincast
