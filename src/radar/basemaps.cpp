// SPDX-License-Identifier: MIT
#include "radar/basemaps.h"

#include "geo/geo_reference.h"
#include "net/http_transfer.h"
#include "platform/folders.h"
#include "radar/cache.h"
#include "radar/composite.h"
#include "radar/image_file.h"
#include "radar/products.h"
#include "radar/radar_view.h"

#include <QFile>

#include <algorithm>
#include <array>

namespace raincast {

namespace {

// The size of every published radar image and layer.
constexpr int kImageWidth = 600;
constexpr int kImageHeight = 550;

enum class Source { radarServer, basemapServer };
enum class Ground { topo, topoElseOverlay, overlay };

/// A layer: where its file comes from and what it is drawn onto. They are loaded in this order.
struct Layer {
    bool BasemapLayers::*shown;
    const char* word; ///< in the file's name: BMX_City_Short.gif
    const char* extension;
    Source source;
    const char* folder; ///< on the radar server, below its overlays
    Ground ground;
    bool required; ///< without its file the load fails
};

constexpr std::array<Layer, 5> kLayers = {{
    {&BasemapLayers::topo, "Topo", "jpg", Source::radarServer, "Topo", Ground::topo, true},
    {&BasemapLayers::rivers, "Rivers", "gif", Source::radarServer, "Rivers",
     Ground::topoElseOverlay, true},
    {&BasemapLayers::counties, "County", "gif", Source::basemapServer, "", Ground::overlay, false},
    {&BasemapLayers::highways, "Highways", "gif", Source::radarServer, "Highways", Ground::overlay,
     false},
    {&BasemapLayers::cities, "City", "gif", Source::basemapServer, "", Ground::overlay, false},
}};

/// The text file that places all layers of a site and range; it is named like the cities.
constexpr Layer kWorldFile = {nullptr,  "City",          "gfw", Source::radarServer,
                              "Cities", Ground::overlay, true};

/// One load: the site's names, the transfers, and what is loaded so far.
class BasemapLoad {
public:
    BasemapLoad(
        RadarState& state, const BasemapLayers& shown, Basemaps& basemaps, RadarView& view,
        const RadarServers& servers
    )
        : m_state(state), m_shown(shown), m_basemaps(basemaps), m_view(view),
          m_radar(servers.radar, true, false), m_basemap(servers.basemap, true, false),
          m_wanted(
              1 + static_cast<int>(std::count_if(
                      kLayers.begin(), kLayers.end(),
                      [&shown](const Layer& layer) { return shown.*layer.shown; }
                  ))
          ) {}

    /// Loads world file and layers; false when a required one cannot be had.
    bool run(GeoPosition centre) {
        const QString folder = siteCacheFolder(m_state.cacheFolder, m_state.siteId);
        if (folder.isEmpty()) {
            return false;
        }
        // A folder that cannot be made shows in the downloads, which fail.
        static_cast<void>(EnsureFolder(folder));
        m_state.imageWidth = kImageWidth;
        m_state.imageHeight = kImageHeight;
        return loadWorldFile(centre) &&
               std::all_of(kLayers.begin(), kLayers.end(), [this](const Layer& layer) {
                   return !(m_shown.*layer.shown) || load(layer) || !layer.required;
               });
    }

    [[nodiscard]] CHttpTransfer& radarTransfer() { return m_radar; }

private:
    [[nodiscard]] QString range() const { return ProductRange(m_state.product).toString(); }
    [[nodiscard]] QString fileName(const Layer& layer) const {
        return QStringLiteral("%1_%2_%3.%4")
            .arg(
                m_state.siteId, QLatin1String(layer.word), range(), QLatin1String(layer.extension)
            );
    }
    [[nodiscard]] QString cachedFile(const Layer& layer) const {
        return siteCacheFolder(m_state.cacheFolder, m_state.siteId) + u'/' + fileName(layer);
    }

    /// Has the layer's file in the cache.
    bool fetch(const Layer& layer) {
        m_view.progress(m_done++, m_wanted);
        const QString name = fileName(layer);
        if (layer.source == Source::basemapServer) {
            return m_basemap.DownloadIfAbsent(
                QStringLiteral("/weather_radar/basemaps/") + name, cachedFile(layer)
            );
        }
        const QString path = QStringLiteral("/ridge/Overlays/%1/%2/%3")
                                 .arg(QLatin1String(layer.folder), range(), name);
        return m_radar.DownloadIfAbsent(path, cachedFile(layer));
    }

    bool loadWorldFile(GeoPosition centre) {
        if (!fetch(kWorldFile)) {
            return false;
        }
        m_view.geoReference().loadWorldFile(
            QFile::encodeName(cachedFile(kWorldFile)).toStdString(), kImageWidth, kImageHeight
        );
        m_view.geoReferenceChanged(centre);
        return true;
    }

    /// True when the file is there; one that is no picture is a layer that stays away.
    bool load(const Layer& layer) {
        if (!fetch(layer)) {
            return false;
        }
        if (layer.ground == Ground::topo) {
            m_basemaps.topo = LoadImageFile(cachedFile(layer), kMostRadarPixels);
        } else {
            const bool ontoTopo = layer.ground == Ground::topoElseOverlay && m_basemaps.topo;
            static_cast<void>(
                LoadAndComposite(cachedFile(layer), ontoTopo ? m_basemaps.topo : m_basemaps.overlay)
            );
        }
        m_view.repaint();
        return true;
    }

    RadarState& m_state;
    const BasemapLayers& m_shown;
    Basemaps& m_basemaps;
    RadarView& m_view;
    CHttpTransfer m_radar;
    CHttpTransfer m_basemap;
    int m_wanted;
    int m_done = 0;
};

} // namespace

bool LoadBasemaps(
    RadarState& state, const BasemapLayers& shown, Basemaps& basemaps, RadarView& view,
    const RadarServers& servers, const QString& siteId, bool updateRadar
) {
    const auto setStatus = [&](const QString& status) {
        state.status = status;
        view.statusChanged(status);
    };
    setStatus(QStringLiteral("Loading basemap...\n"));
    view.repaint();
    const GeoPosition centre = view.centrePosition();
    view.showWaiting(true);
    state.siteId = siteId;
    RadarUpdate update(state, view);
    if (updateRadar) {
        update.discardFrames();
    }
    basemaps = {};
    view.geoReference().invalidate();

    bool complete = false;
    bool result = false;
    {
        BasemapLoad load(state, shown, basemaps, view, servers);
        complete = load.run(centre);
        if (!complete) {
            setStatus(QStringLiteral(
                "Failed to access\nthe internet. Please\ncheck your connection\nsettings."
            ));
        } else if (updateRadar) {
            result = update.UpdateRadar(load.radarTransfer());
        } else {
            setStatus({});
            result = true;
        }
    }
    view.showWaiting(false);
    view.repaint();
    if (complete) {
        view.contentChanged();
    }
    return result;
}

} // namespace raincast
