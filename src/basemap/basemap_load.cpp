// SPDX-License-Identifier: MIT
#include "basemap/basemap_load.h"

#include "basemap/map_layer.h"
#include "basemap/radar_view.h"
#include "core/clock.h"
#include "core/folders.h"
#include "geo/geo_reference.h"
#include "image/composite.h"
#include "image/image_file.h"
#include "net/byte_allowance.h"
#include "radar/cache.h"
#include "radar/catalogue/closed_sites.h"
#include "radar/catalogue/image_geometry.h"
#include "radar/catalogue/products.h"
#include "radar/file_kinds.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace raincast {

namespace {

/// The text file that places all layers of a site and range; it is named like the cities.
constexpr MapLayer kPlacement = {
    nullptr,
    "City",
    "gfw",
    kWorldFile,
    MapLayer::Source::radarServer,
    "Cities",
    MapLayer::Ground::overlay,
    true};

GeoReference readPlace(const QString& file) {
    GeoReference reference;
    static_cast<void>(reference.loadWorldFile(
        QFile::encodeName(file).toStdString(), kRadarImageWidth, kRadarImageHeight
    ));
    return reference;
}

/// Whether the middle of a site's pictures lies at a position, by about a kilometre.
bool isMiddle(const GeoReference& reference, GeoPosition position) {
    constexpr double kNear = 0.01;
    const GeoPosition middle = reference.pixelToGeo({kAntennaColumn, kAntennaRow});
    return std::abs(middle.latitude - position.latitude) < kNear &&
           std::abs(middle.longitude - position.longitude) < kNear;
}

/// Puts a site's new world file in the place of the old one if it places the pictures elsewhere;
/// then nothing that lies round the old antenna stays, the world file of the other range included.
void takePlace(const QString& file, const QString& newFile, GeoPosition oldPlace) {
    const GeoReference reference = readPlace(newFile);
    if (!reference.valid() || isMiddle(reference, oldPlace)) {
        QFile::remove(newFile);
        return;
    }
    const QFileInfo place(newFile);
    for (const QString& folder : withSharpFolders(place.path())) {
        for (const QChar kind : QStringLiteral("CHRTW")) { // as in radar/cache.h
            const QString pattern = QStringLiteral("\?\?\?_") + kind + u'*';
            DeleteMatchingExcept(folder, pattern, {place.fileName()});
        }
    }
    // Killed before this, we have no layers left, and fetch all of them.
    QFile::rename(newFile, file);
}

/// Grounds are on the screen: copies of them are drawn upon.
Basemaps withOwnGrounds(Basemaps maps) {
    for (Bitmap Basemaps::*ground : {&Basemaps::topo, &Basemaps::overlay}) {
        maps.*ground = maps.*ground ? std::make_shared<QImage>(*(maps.*ground)) : nullptr;
    }
    return maps;
}

Bitmap& groundOf(const MapLayer& layer, Basemaps& maps) {
    return layer.isOnTopo(maps.topo != nullptr) ? maps.topo : maps.overlay;
}

/// The maps with a layer's file. A layer that cannot be drawn stays missing.
Basemaps withFile(const Basemaps& shown, const MapLayer& layer, const QString& file) {
    Basemaps maps = withOwnGrounds(shown);
    maps.missing -= LoadAndComposite(file, groundOf(layer, maps)) ? 1 : 0;
    return maps;
}

} // namespace

BasemapLoad::BasemapLoad(const RadarScene& scene)
    : BasemapLoad(scene, std::make_shared<ByteAllowance>()) {}

BasemapLoad::BasemapLoad(const RadarScene& scene, const std::shared_ptr<ByteAllowance>& allowance)
    : m_state(scene.state), m_shown(scene.shown), m_basemaps(scene.basemaps), m_view(scene.view),
      m_radar(scene.downloads, scene.servers.radar, true, false, allowance),
      m_basemap(scene.downloads, scene.servers.basemap, true, false, allowance) {
    for (const MapLayer& layer : mapLayers()) {
        if (isShown(layer)) {
            m_left.push_back({&layer, nullptr});
        }
    }
    m_basemaps.missing = static_cast<int>(m_left.size());
    m_wanted = m_basemaps.missing;
}

void BasemapLoad::loadToFirstFailure(GeoPosition centre, Done done) {
    m_whenDone = std::move(done);
    m_endAtFailure = true;
    m_background.run(
        [root = m_state.cacheRoot(), site = m_state.siteId] { return makeSiteFolder(root, site); },
        [this, centre](const tl::expected<void, QString>& made) {
            if (!made) {
                m_writeFailure = made.error();
                end(false);
                return;
            }
            ++m_wanted;
            placeImage(centre);
        }
    );
}

void BasemapLoad::loadLayers(Done done) {
    m_whenDone = std::move(done);
    loadCached();
}

std::optional<QString> BasemapLoad::cacheFailure() const {
    return m_writeFailure ? std::optional(cacheFailureText(m_state.cacheRoot(), *m_writeFailure))
                          : std::nullopt;
}

QString BasemapLoad::trouble() const {
    if (m_writeFailure) {
        return {};
    }
    return m_radar.trouble().isEmpty() ? m_basemap.trouble() : m_radar.trouble();
}

bool BasemapLoad::isShown(const MapLayer& layer) const {
    return m_shown.*layer.shown;
}

QString BasemapLoad::range() const {
    return ProductRange(m_state.product).toString();
}

QString BasemapLoad::cachedFile(const MapLayer& layer) const {
    return siteCacheFolder(m_state.cacheRoot(), m_state.siteId) + u'/' +
           fileNameOf(layer, m_state.siteId, range());
}

QString BasemapLoad::serverPath(const MapLayer& layer) const {
    return serverPathOf(layer, m_state.siteId, range());
}

// Puts the layer's file into the cache.
void BasemapLoad::fetch(const MapLayer& layer, Taken done) {
    CHttpTransfer& transfer = layer.source == MapLayer::Source::basemapServer ? m_basemap : m_radar;
    transfer.DownloadToFile(
        serverPath(layer), cachedFile(layer), layer.kind,
        [this, done = std::move(done)](const CHttpTransfer::Fetched& fetched) {
            if (!m_writeFailure) {
                m_writeFailure = fetched.writeFailure;
            }
            done(fetched.kept);
        }
    );
}

// Loads the world file, then the layers.
void BasemapLoad::placeImage(GeoPosition centre) {
    m_view.progress(m_done++, m_wanted);
    const auto placed = [this, centre](bool valid) {
        if (!valid) {
            end(false);
            return;
        }
        m_view.geoReferenceChanged(centre);
        loadCached();
    };
    place([this, placed](bool valid) {
        if (valid) {
            mayHaveMoved() ? askForPlace(placed) : placed(true);
            return;
        }
        fetch(kPlacement, [this, placed](bool kept) { kept ? place(placed) : placed(false); });
    });
}

// Reads the cached world file.
void BasemapLoad::place(Taken done) {
    const auto read = [file = cachedFile(kPlacement)] { return readPlace(file); };
    m_background.run(read, [this, done = std::move(done)](const GeoReference& reference) {
        if (reference.valid()) {
            m_view.geoReference() = reference;
        }
        done(reference.valid());
    });
}

// Whether the place in the cache is that of an antenna that is no more. Sample weather keeps to it.
bool BasemapLoad::mayHaveMoved() const {
    const std::string site = m_state.siteId.toStdString();
    const AntennaPosition* const antenna = findAntenna(site);
    return m_state.cacheBranch.isEmpty() && antenna != nullptr &&
           findClosedSite(site, Clock::current().now()) != nullptr &&
           isMiddle(m_view.geoReference(), {antenna->latitude, antenna->longitude});
}

void BasemapLoad::askForPlace(Taken done) {
    const QString file = cachedFile(kPlacement);
    const QString newFile = file + QStringLiteral(".new");
    const AntennaPosition* const antenna = findAntenna(m_state.siteId.toStdString());
    const GeoPosition oldPlace{antenna->latitude, antenna->longitude};
    m_radar.DownloadToFile(
        serverPath(kPlacement), newFile, kWorldFile,
        [=, this, done = std::move(done)](const CHttpTransfer::Fetched& fetched) {
            if (!fetched.kept) {
                done(true);
                return;
            }
            m_background.run(
                [=] { takePlace(file, newFile, oldPlace); }, [this, done] { place(done); }
            );
        }
    );
}

// Side by side: most starts find all of them in the cache.
void BasemapLoad::loadCached() {
    if (m_left.empty()) {
        end(true);
        return;
    }
    m_loading = m_left.size();
    for (Layer& each : m_left) {
        m_background.run(
            [file = cachedFile(*each.layer)] { return LoadImageFile(file, kMostRadarPixels); },
            [this, &each](const Bitmap& picture) {
                each.picture = picture;
                if (--m_loading == 0) {
                    drawNext();
                }
            }
        );
    }
}

// Draws what the cache has, up to the first layer that it lacks: that one is fetched.
void BasemapLoad::drawNext() {
    const auto lacking = std::find_if(m_left.begin(), m_left.end(), [](const Layer& each) {
        return each.picture == nullptr;
    });
    if (m_left.empty()) {
        end(true);
    } else if (lacking == m_left.begin()) {
        load(*lacking->layer);
    } else {
        std::vector<Layer> cached(m_left.begin(), lacking);
        m_left.erase(m_left.begin(), lacking);
        m_done += static_cast<int>(cached.size());
        m_view.progress(m_done - 1, m_wanted);
        draw([maps = m_basemaps, cached = std::move(cached)] { return withLayers(maps, cached); });
    }
}

void BasemapLoad::load(const MapLayer& layer) {
    m_view.progress(m_done++, m_wanted);
    fetch(layer, [this, &layer](bool kept) {
        m_left.erase(m_left.begin());
        if (kept) {
            draw([maps = m_basemaps, &layer, file = cachedFile(layer)] {
                return withFile(maps, layer, file);
            });
        } else if (layer.required && m_endAtFailure) {
            end(false);
        } else {
            drawNext();
        }
    });
}

void BasemapLoad::draw(std::function<Basemaps()> drawn) {
    m_background.run(std::move(drawn), [this](const Basemaps& maps) {
        m_basemaps = maps;
        m_view.repaint();
        drawNext();
    });
}

Basemaps BasemapLoad::withLayers(const Basemaps& shown, const std::vector<Layer>& layers) {
    Basemaps maps = withOwnGrounds(shown);
    for (const auto& [layer, picture] : layers) {
        Bitmap& ground = groundOf(*layer, maps);
        if (layer->ground == MapLayer::Ground::topo) {
            ground = picture;
        } else {
            CompositeOnto(ground, *picture, picture->width(), picture->height());
        }
        maps.missing -= ground ? 1 : 0;
    }
    return maps;
}

void BasemapLoad::end(bool complete) {
    // From the event loop: what is called may end this.
    m_background.later([done = m_whenDone, complete] { done(complete); });
}

} // namespace raincast
