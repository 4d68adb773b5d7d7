// SPDX-License-Identifier: MIT
#include "radar/basemaps.h"

#include "geo/geo_reference.h"
#include "radar/basemap_load.h"
#include "radar/catalogue/sites.h"
#include "radar/radar_view.h"

namespace raincast {

namespace {

void setStatus(RadarState& state, RadarView& view, const QString& status) {
    state.status = status;
    view.statusChanged(status);
}

/// What the user reads when a required layer could not be had.
QString failureText(const BasemapLoad& load) {
    const QString cache = load.cacheFailure();
    return cache.isEmpty() ? QStringLiteral("Failed to access\nthe internet. Please\ncheck your "
                                            "connection\nsettings.")
                           : cache;
}

/// A cache that could not be written is told unless something worse is.
void tellCacheFailure(RadarState& state, RadarView& view, const BasemapLoad& load) {
    const QString text = load.cacheFailure();
    if (state.status.isEmpty() && !text.isEmpty()) {
        setStatus(state, view, text);
    }
}

} // namespace

bool LoadBasemaps(
    RadarState& state, const BasemapLayers& shown, Basemaps& basemaps, RadarView& view,
    const RadarServers& servers, const QString& siteId, bool updateRadar
) {
    setStatus(state, view, QStringLiteral("Loading basemap...\n"));
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
    state.imageWidth = kRadarImageWidth;
    state.imageHeight = kRadarImageHeight;

    bool complete = false;
    bool result = false;
    {
        BasemapLoad load(state, shown, basemaps, view, servers);
        complete = load.loadToFirstFailure(centre);
        if (!complete) {
            setStatus(state, view, failureText(load));
        } else if (updateRadar) {
            result = update.UpdateRadar(load.radarTransfer());
            tellCacheFailure(state, view, load);
        } else {
            setStatus(state, view, load.cacheFailure());
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

namespace {

/// Loads the layers anew that a load before could not get. Those that are shown stay until then.
void loadMissing(BasemapLoad& load, const Basemaps& loaded, Basemaps& basemaps, RadarView& view) {
    load.loadLayers();
    if (loaded.missing < basemaps.missing) {
        basemaps = loaded;
        view.contentChanged();
    }
}

} // namespace

bool RequestUpdate(
    RadarState& state, const BasemapLayers& shown, Basemaps& basemaps, RadarView& view,
    const RadarServers& servers
) {
    const ImagePixel centre = view.centrePixel();
    const bool inside = 0 <= centre.column && centre.column < state.imageWidth && 0 <= centre.row &&
                        centre.row < state.imageHeight;
    if (!inside) {
        const GeoPosition position = view.centrePosition();
        const QStringView nearest = NearestSite(position.latitude, position.longitude);
        // A world file of nonsense can put the centre nowhere: the site stays then.
        if (!nearest.isEmpty()) {
            return LoadBasemaps(state, shown, basemaps, view, servers, nearest.toString(), true);
        }
    }
    view.showWaiting(true);
    bool updated = false;
    {
        Basemaps loaded;
        BasemapLoad load(state, shown, loaded, view, servers);
        updated = RadarUpdate(state, view).UpdateRadar(load.radarTransfer());
        const bool reached =
            load.radarTransfer().connectState() == CHttpTransfer::ConnectState::connected;
        // The radar comes first: a server of layers that does not answer may cost half a minute.
        if (basemaps.missing > 0 && reached) {
            loadMissing(load, loaded, basemaps, view);
            tellCacheFailure(state, view, load);
        }
    }
    view.showWaiting(false);
    view.repaint();
    return updated;
}

} // namespace raincast
