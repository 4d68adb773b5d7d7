// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"
#include "net/http_transfer.h"
#include "radar/basemaps.h"

#include <QString>

#include <memory>

namespace raincast {

struct MapLayer;

/// One load of a site's map layers: each file from the cache or, where the cache has none that can
/// be used, from its server. The layers are drawn into `basemaps`, which begin empty. All that it
/// is given is borrowed; it lives for one action of the user.
class BasemapLoad {
public:
    BasemapLoad(
        const RadarState& state, const BasemapLayers& shown, Basemaps& basemaps, RadarView& view,
        const RadarServers& servers
    );

    /// Loads the world file and the layers that are shown, up to the first that is required and
    /// cannot be had; false when there is one. `centre` is where the view's centre is before.
    [[nodiscard]] bool loadToFirstFailure(GeoPosition centre);

    /// Loads the layers that are shown, each whatever becomes of the others.
    void loadLayers();

    [[nodiscard]] CHttpTransfer& radarTransfer() { return m_radar; }

    /// The status text that says so if the cache could not be written; empty if it could.
    [[nodiscard]] QString cacheFailure() const;

private:
    BasemapLoad(
        const RadarState& state, const BasemapLayers& shown, Basemaps& basemaps, RadarView& view,
        const RadarServers& servers, const std::shared_ptr<ByteAllowance>& allowance
    );
    [[nodiscard]] QString range() const;
    [[nodiscard]] QString fileName(const MapLayer& layer) const;
    [[nodiscard]] QString cachedFile(const MapLayer& layer) const;
    [[nodiscard]] bool isShown(const MapLayer& layer) const;
    [[nodiscard]] bool fetch(const MapLayer& layer);
    [[nodiscard]] QString serverPath(const MapLayer& layer) const;
    [[nodiscard]] bool loadWorldFile(GeoPosition centre);
    bool load(const MapLayer& layer);
    [[nodiscard]] bool draw(const MapLayer& layer);

    const RadarState& m_state;
    const BasemapLayers& m_shown;
    Basemaps& m_basemaps;
    RadarView& m_view;
    CHttpTransfer m_radar;
    CHttpTransfer m_basemap;
    QString m_writeFailure; ///< why the cache could not be written, the first time
    int m_wanted = 0;       ///< files
    int m_done = 0;
};

} // namespace raincast
