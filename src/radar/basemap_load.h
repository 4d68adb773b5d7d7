// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"
#include "net/http_transfer.h"
#include "radar/basemaps.h"

#include <QString>

#include <memory>
#include <optional>

namespace raincast {

struct MapLayer;

/// One load of a site's map layers: each file from the cache or, where the cache has no file that
/// can be used, from its server. The layers are drawn into the scene's basemaps, which begin empty.
/// It lives for one action of the user.
class BasemapLoad {
public:
    explicit BasemapLoad(const RadarScene& scene);

    /// Loads the world file and the layers that are shown, up to the first required one that fails;
    /// false then. `centre` is where the view's centre was before.
    [[nodiscard]] bool loadToFirstFailure(GeoPosition centre);

    /// Loads the layers that are shown, and goes on where one fails.
    void loadLayers();

    [[nodiscard]] CHttpTransfer& radarTransfer() { return m_radar; }

    /// The status text for a cache that could not be written; none if it could.
    [[nodiscard]] std::optional<QString> cacheFailure() const;

private:
    BasemapLoad(const RadarScene& scene, const std::shared_ptr<ByteAllowance>& allowance);
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
    std::optional<QString> m_writeFailure; ///< why the cache could not be written, the first time
    int m_wanted = 0;                      ///< files
    int m_done = 0;
};

} // namespace raincast
