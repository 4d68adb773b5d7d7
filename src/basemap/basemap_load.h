// SPDX-License-Identifier: MIT
#pragma once

#include "basemap/basemaps.h"
#include "core/background.h"
#include "geo/geo_position.h"
#include "net/http_transfer.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace raincast {

struct MapLayer;

/// One load of a site's map layers: each file from the cache or, where the cache has no file that
/// can be used, from its server. What the cache has of a closed site may lie round its old antenna:
/// if the server has another place for its pictures, all layers of the site are fetched again. The
/// layers are drawn into the scene's basemaps, which begin empty. It lives for one action of the
/// user; its end cancels it.
class BasemapLoad {
public:
    using Done = std::function<void(bool complete)>;

    explicit BasemapLoad(const RadarScene& scene);

    /// Loads the world file and the layers that are shown, up to the first required one that fails;
    /// false then. `centre` is where the view's centre was before.
    void loadToFirstFailure(GeoPosition centre, Done done);

    /// Loads the layers that are shown, and goes on where one fails.
    void loadLayers(Done done);

    [[nodiscard]] CHttpTransfer& radarTransfer() { return m_radar; }
    [[nodiscard]] const CHttpTransfer& radarTransfer() const { return m_radar; }
    [[nodiscard]] const CHttpTransfer& basemapTransfer() const { return m_basemap; }

    /// The status text for a cache that could not be written; none if it could.
    [[nodiscard]] std::optional<QString> cacheFailure() const;

    /// What a server did wrong, in a sentence; empty when nothing, or when the cache is to blame.
    [[nodiscard]] QString trouble() const;

private:
    /// Calls with whether a file was taken: from the cache, or as it came.
    using Taken = std::function<void(bool taken)>;

    BasemapLoad(const RadarScene& scene, const std::shared_ptr<ByteAllowance>& allowance);
    [[nodiscard]] QString range() const;
    [[nodiscard]] QString cachedFile(const MapLayer& layer) const;
    [[nodiscard]] bool isShown(const MapLayer& layer) const;
    [[nodiscard]] QString serverPath(const MapLayer& layer) const;
    void fetch(const MapLayer& layer, Taken done);
    void placeImage(GeoPosition centre);
    void place(Taken done);
    [[nodiscard]] bool mayHaveMoved() const;
    void askForPlace(Taken done);

    /// A layer that is shown, and its cached picture; null as long as it is not loaded, and without
    /// a good one.
    struct Layer {
        const MapLayer* layer;
        Bitmap picture;
    };
    void loadCached();
    void drawNext();
    void load(const MapLayer& layer);
    void draw(std::function<Basemaps()> drawn);
    [[nodiscard]] static Basemaps
    withLayers(const Basemaps& shown, const std::vector<Layer>& layers);
    void end(bool complete);

    const RadarState& m_state;
    const BasemapLayers& m_shown;
    Basemaps& m_basemaps;
    RadarView& m_view;
    CHttpTransfer m_radar;
    CHttpTransfer m_basemap;
    std::optional<QString> m_writeFailure; ///< why the cache could not be written, the first time
    std::vector<Layer> m_left;             ///< those that are not drawn yet, in their order
    std::size_t m_loading = 0;             ///< how many of their files
    bool m_endAtFailure = false;           ///< of a required layer
    int m_wanted = 0;                      ///< files
    int m_done = 0;
    Done m_whenDone;
    Background m_background;
};

} // namespace raincast
