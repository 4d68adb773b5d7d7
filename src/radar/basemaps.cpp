// SPDX-License-Identifier: MIT
#include "radar/basemaps.h"

#include "geo/geo_reference.h"
#include "radar/basemap_load.h"
#include "radar/catalogue/sites.h"
#include "radar/radar_view.h"

#include <optional>

namespace raincast {

namespace {

void setStatus(const RadarScene& scene, const QString& status) {
    scene.state.status = status;
    scene.view.statusChanged(status);
}

/// The status text when a required layer could not be fetched.
QString failureText(const BasemapLoad& load) {
    return load.cacheFailure().value_or(
        QStringLiteral("Failed to access\nthe internet. Please\ncheck your connection\nsettings.")
    );
}

/// Says that the cache could not be written, unless the status text says something worse.
void sayCacheFailure(const RadarScene& scene, const BasemapLoad& load) {
    const auto failure = load.cacheFailure();
    if (scene.state.status.isEmpty() && failure) {
        setStatus(scene, *failure);
    }
}

/// Begins a load: another site, no layers, no place on the earth.
void beginLoad(const RadarScene& scene, const QString& siteId) {
    scene.state.siteId = siteId;
    scene.basemaps = {};
    scene.view.geoReference().invalidate();
    scene.state.imageWidth = kRadarImageWidth;
    scene.state.imageHeight = kRadarImageHeight;
}

/// Loads the layers again that a load before could not get. The layers on the screen stay until
/// then.
void loadMissing(const RadarScene& scene, BasemapLoad& load, const Basemaps& loaded) {
    load.loadLayers();
    if (loaded.missing < scene.basemaps.missing) {
        scene.basemaps = loaded;
        scene.view.contentChanged();
    }
}

/// The site to change to; none while the view's centre is inside the image.
std::optional<QString> siteToChangeTo(const RadarScene& scene) {
    const ImagePixel centre = scene.view.centrePixel();
    const bool inside = 0 <= centre.column && centre.column < scene.state.imageWidth &&
                        0 <= centre.row && centre.row < scene.state.imageHeight;
    if (inside) {
        return std::nullopt;
    }
    const GeoPosition position = scene.view.centrePosition();
    // A damaged world file can put the centre nowhere: the site stays then.
    const auto nearest = NearestSite(position.latitude, position.longitude);
    return nearest ? std::optional(nearest->toString()) : std::nullopt;
}

/// Updates the radar first: a server of layers that does not answer may cost half a minute.
bool updateInPlace(const RadarScene& scene) {
    Basemaps loaded;
    BasemapLoad load({scene.state, scene.shown, loaded, scene.view, scene.servers});
    const bool updated = RadarUpdate(scene.state, scene.view).UpdateRadar(load.radarTransfer());
    const bool reached =
        load.radarTransfer().connectState() == CHttpTransfer::ConnectState::connected;
    if (scene.basemaps.missing > 0 && reached) {
        loadMissing(scene, load, loaded);
        sayCacheFailure(scene, load);
    }
    return updated;
}

} // namespace

bool LoadBasemaps(const RadarScene& scene, const QString& siteId, bool updateRadar) {
    RadarView& view = scene.view;
    setStatus(scene, QStringLiteral("Loading basemap...\n"));
    view.repaint();
    const GeoPosition centre = view.centrePosition();
    view.showWaiting(true);
    RadarUpdate update(scene.state, view);
    if (updateRadar) {
        update.discardFrames();
    }
    beginLoad(scene, siteId);

    bool complete = false;
    bool result = false;
    {
        BasemapLoad load(scene);
        complete = load.loadToFirstFailure(centre);
        if (!complete) {
            setStatus(scene, failureText(load));
        } else if (updateRadar) {
            result = update.UpdateRadar(load.radarTransfer());
            sayCacheFailure(scene, load);
        } else {
            setStatus(scene, load.cacheFailure().value_or(QString()));
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

bool RequestUpdate(const RadarScene& scene) {
    if (const auto site = siteToChangeTo(scene)) {
        return LoadBasemaps(scene, *site, true);
    }
    scene.view.showWaiting(true);
    const bool updated = updateInPlace(scene);
    scene.view.showWaiting(false);
    scene.view.repaint();
    return updated;
}

} // namespace raincast
