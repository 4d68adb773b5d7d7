// SPDX-License-Identifier: MIT
#include "basemap/basemaps.h"

#include "basemap/basemap_load.h"
#include "basemap/radar_view.h"
#include "core/text.h"
#include "geo/geo_reference.h"
#include "image/image_file.h"
#include "radar/catalogue/sites.h"

#include <optional>
#include <utility>

namespace raincast {

namespace {

void setStatus(const RadarScene& scene, const QString& status, const QString& cause = {}) {
    scene.state.cause = cause;
    scene.state.status = status;
    scene.view.statusChanged(status);
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

/// The layers of a site, and its radar if that is wanted.
class SiteLoad : public RadarAction {
public:
    SiteLoad(const RadarScene& scene, Done done) : m_scene(scene), m_done(std::move(done)) {}

    void start(const QString& siteId, bool updateRadar) {
        setStatus(m_scene, Text::tr("Loading basemap...\n"));
        m_scene.view.repaint();
        const GeoPosition centre = m_scene.view.centrePosition();
        m_scene.view.showWaiting(true);
        beginLoad(m_scene, siteId);
        if (updateRadar) {
            discardOtherFrames(m_scene.state);
        }
        m_load.emplace(m_scene);
        m_load->loadToFirstFailure(centre, [this, updateRadar](bool complete) {
            if (!complete) {
                setStatus(m_scene, failureText(), m_load->trouble());
                end(false, false);
            } else if (updateRadar) {
                update();
            } else {
                setStatus(m_scene, m_load->cacheFailure().value_or(QString()));
                end(true, true);
            }
        });
    }

private:
    void update() {
        m_update.emplace(m_scene.state, m_scene.view, m_load->radarTransfer(), shownPictures());
        m_update->UpdateRadar([this](bool updated) {
            sayCacheFailure(m_scene, *m_load);
            end(true, updated);
        });
    }
    /// The status text when a required layer could not be fetched.
    [[nodiscard]] QString failureText() const {
        return m_load->cacheFailure().value_or(
            Text::tr("Failed to access\nthe internet. Please\ncheck your connection\nsettings.")
        );
    }
    void end(bool complete, bool result) {
        m_scene.view.showWaiting(false);
        m_scene.view.repaint();
        if (complete) {
            m_scene.view.contentChanged();
        }
        const Done done = m_done; // it may end this
        done(result);
    }

    RadarScene m_scene;
    Done m_done;
    std::optional<BasemapLoad> m_load;
    std::optional<RadarUpdate> m_update;
};

/// The radar of the site that is shown, and then the layers that a load before could not get.
class UpdateInPlace : public RadarAction {
public:
    UpdateInPlace(const RadarScene& scene, Done done)
        : m_scene(scene), m_done(std::move(done)),
          m_load(RadarScene{
              scene.state, scene.shown, m_loaded, scene.view, scene.servers, scene.downloads}),
          m_update(scene.state, scene.view, m_load.radarTransfer(), shownPictures()) {}

    // The radar comes first: a server of layers that does not answer may cost half a minute.
    void start() {
        m_scene.view.showWaiting(true);
        m_update.UpdateRadar([this](bool updated) {
            const auto state = m_load.radarTransfer().connectState();
            const bool reached = state == CHttpTransfer::ConnectState::connected;
            if (m_scene.basemaps.missing > 0 && reached) {
                m_load.loadLayers([this, updated](bool) { useLoaded(updated); });
            } else {
                end(updated);
            }
        });
    }

private:
    /// The layers on the screen stay until there are more.
    void useLoaded(bool updated) {
        if (m_loaded.missing < m_scene.basemaps.missing) {
            m_scene.basemaps = m_loaded;
            m_scene.view.contentChanged();
        }
        sayCacheFailure(m_scene, m_load);
        end(updated);
    }
    void end(bool updated) {
        m_scene.view.showWaiting(false);
        m_scene.view.repaint();
        const Done done = m_done; // it may end this
        done(updated);
    }

    RadarScene m_scene;
    Done m_done;
    Basemaps m_loaded;
    BasemapLoad m_load;
    RadarUpdate m_update;
};

} // namespace

std::unique_ptr<RadarAction> LoadBasemaps(
    const RadarScene& scene, const QString& siteId, bool updateRadar, RadarAction::Done done
) {
    auto load = std::make_unique<SiteLoad>(scene, std::move(done));
    load->start(siteId, updateRadar);
    return load;
}

std::unique_ptr<RadarAction> RequestUpdate(const RadarScene& scene, RadarAction::Done done) {
    if (const auto site = siteToChangeTo(scene)) {
        return LoadBasemaps(scene, *site, true, std::move(done));
    }
    auto update = std::make_unique<UpdateInPlace>(scene, std::move(done));
    update->start();
    return update;
}

} // namespace raincast
