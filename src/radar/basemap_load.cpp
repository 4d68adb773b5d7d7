// SPDX-License-Identifier: MIT
#include "radar/basemap_load.h"

#include "geo/geo_reference.h"
#include "net/byte_allowance.h"
#include "radar/cache.h"
#include "radar/catalogue/products.h"
#include "radar/file_kinds.h"
#include "radar/image/composite.h"
#include "radar/image/image_file.h"
#include "radar/radar_view.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace raincast {

namespace {

enum class Source { radarServer, basemapServer };
enum class Ground { topo, topoElseOverlay, overlay };

} // namespace

/// A layer: where its file comes from, and onto what it is drawn.
struct MapLayer {
    bool BasemapLayers::*shown;
    const char* word; ///< in the file's name: BMX_City_Short.gif
    const char* extension;
    const FileKind& kind;
    Source source;
    const char* folder; ///< on the radar server, below its overlays
    Ground ground;
    bool required; ///< without its file a load ends
};

namespace {

/// They are loaded in this order.
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

/// The text file that places all layers of a site and range; it is named like the cities.
constexpr MapLayer kPlacement = {nullptr,  "City",          "gfw", kWorldFile, Source::radarServer,
                                 "Cities", Ground::overlay, true};

} // namespace

BasemapLoad::BasemapLoad(const RadarScene& scene)
    : BasemapLoad(scene, std::make_shared<ByteAllowance>()) {}

BasemapLoad::BasemapLoad(const RadarScene& scene, const std::shared_ptr<ByteAllowance>& allowance)
    : m_state(scene.state), m_shown(scene.shown), m_basemaps(scene.basemaps), m_view(scene.view),
      m_radar(scene.servers.radar, true, false, allowance),
      m_basemap(scene.servers.basemap, true, false, allowance) {
    m_basemaps.missing = static_cast<int>(std::count_if(
        kLayers.begin(), kLayers.end(), [this](const MapLayer& layer) { return isShown(layer); }
    ));
    m_wanted = m_basemaps.missing;
}

bool BasemapLoad::loadToFirstFailure(GeoPosition centre) {
    if (const auto made = makeSiteFolder(m_state.cacheFolder, m_state.siteId); !made) {
        m_writeFailure = made.error();
        return false;
    }
    ++m_wanted;
    return loadWorldFile(centre) &&
           std::all_of(kLayers.begin(), kLayers.end(), [this](const MapLayer& layer) {
               return !isShown(layer) || load(layer) || !layer.required;
           });
}

void BasemapLoad::loadLayers() {
    for (const MapLayer& layer : kLayers) {
        if (isShown(layer)) {
            load(layer);
        }
    }
}

std::optional<QString> BasemapLoad::cacheFailure() const {
    return m_writeFailure ? std::optional(cacheFailureText(m_state.cacheFolder, *m_writeFailure))
                          : std::nullopt;
}

bool BasemapLoad::isShown(const MapLayer& layer) const {
    return m_shown.*layer.shown;
}

QString BasemapLoad::range() const {
    return ProductRange(m_state.product).toString();
}

QString BasemapLoad::fileName(const MapLayer& layer) const {
    return QStringLiteral("%1_%2_%3.%4")
        .arg(m_state.siteId, QLatin1String(layer.word), range(), QLatin1String(layer.extension));
}

QString BasemapLoad::cachedFile(const MapLayer& layer) const {
    return siteCacheFolder(m_state.cacheFolder, m_state.siteId) + u'/' + fileName(layer);
}

QString BasemapLoad::serverPath(const MapLayer& layer) const {
    return layer.source == Source::basemapServer
               ? QStringLiteral("/weather_radar/basemaps/") + fileName(layer)
               : QStringLiteral("/ridge/Overlays/%1/%2/%3")
                     .arg(QLatin1String(layer.folder), range(), fileName(layer));
}

// Puts the layer's file into the cache.
bool BasemapLoad::fetch(const MapLayer& layer) {
    CHttpTransfer& transfer = layer.source == Source::basemapServer ? m_basemap : m_radar;
    const bool fetched = transfer.DownloadToFile(serverPath(layer), cachedFile(layer), layer.kind);
    if (!m_writeFailure) {
        m_writeFailure = transfer.writeFailure();
    }
    return fetched;
}

bool BasemapLoad::loadWorldFile(GeoPosition centre) {
    m_view.progress(m_done++, m_wanted);
    const auto place = [this] {
        return m_view.geoReference().loadWorldFile(
            QFile::encodeName(cachedFile(kPlacement)).toStdString(), kRadarImageWidth,
            kRadarImageHeight
        );
    };
    if (!place() && !(fetch(kPlacement) && place())) {
        return false;
    }
    m_view.geoReferenceChanged(centre);
    return true;
}

// False when the layer cannot be fetched. A layer that came and cannot be drawn counts as missing.
bool BasemapLoad::load(const MapLayer& layer) {
    m_view.progress(m_done++, m_wanted);
    bool drawn = draw(layer);
    if (!drawn && !fetch(layer)) {
        return false;
    }
    drawn = drawn || draw(layer);
    m_basemaps.missing -= drawn ? 1 : 0;
    m_view.repaint();
    return true;
}

// Draws the layer's cached file onto its ground; false when there is no such file, or it is not a
// picture.
bool BasemapLoad::draw(const MapLayer& layer) {
    if (layer.ground == Ground::topo) {
        m_basemaps.topo = LoadImageFile(cachedFile(layer), kMostRadarPixels);
        return m_basemaps.topo != nullptr;
    }
    const bool ontoTopo = layer.ground == Ground::topoElseOverlay && m_basemaps.topo;
    return LoadAndComposite(cachedFile(layer), ontoTopo ? m_basemaps.topo : m_basemaps.overlay);
}

} // namespace raincast
