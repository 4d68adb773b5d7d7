// SPDX-License-Identifier: MIT
#pragma once

#include "net/servers.h"
#include "radar/bitmap.h"
#include "radar/radar_state.h"

#include <QString>

#include <functional>
#include <memory>

namespace raincast {

class Downloads;
class RadarView;

/// The map layers that are shown under and over a radar image.
struct BasemapLayers {
    bool topo = true;
    bool rivers = true;
    bool counties = true;
    bool highways = true;
    bool cities = true;
};

/// The layers of a site, composited.
struct Basemaps {
    Bitmap topo;     ///< opaque, under the radar, the rivers burnt into it; null: not shown
    Bitmap overlay;  ///< lines on white, over the radar with white transparent; null: none
    int missing = 0; ///< layers that should be shown and could not be loaded
};

/// All that a load reads and changes: a site's state and layers, the view on them, the servers, and
/// what fetches from them. Everything but the servers is borrowed for the length of one action of
/// the user.
struct RadarScene {
    RadarState& state;
    const BasemapLayers& shown;
    Basemaps& basemaps;
    RadarView& view;
    RadarServers servers;
    Downloads& downloads;
};

/// An action of the user while it runs in the background. Its end cancels it: then nothing more
/// changes, and `Done` is not called.
class RadarAction {
public:
    /// Called once at its end, from the event loop; may end the action.
    using Done = std::function<void(bool result)>;

    virtual ~RadarAction() = default;
    RadarAction(const RadarAction&) = delete;
    RadarAction& operator=(const RadarAction&) = delete;

protected:
    RadarAction() = default;
};

/// Changes the scene to a site and loads the site's map layers of the product's range, and the
/// world file that places them on the earth: each file from the cache or, where the cache has no
/// file that can be used, from its server. With `updateRadar` it drops frames of another site or
/// product at the start and updates the radar at the end.
///
/// The result is false when the world file, the topo or the rivers (of those that are shown) cannot
/// be fetched: then the status text says that the internet cannot be reached, or that the cache
/// cannot be written, and the layers loaded so far stay. A missing county, highway or city layer is
/// not a failure, nor is a layer that came and is defective. With `updateRadar` the result is the
/// update's.
[[nodiscard]] std::unique_ptr<RadarAction> LoadBasemaps(
    const RadarScene& scene, const QString& siteId, bool updateRadar, RadarAction::Done done
);

/// What commands and automatic updates call. While the view's centre lies inside the radar image,
/// updates the radar of the site that is shown and then tries the missing layers again; otherwise
/// changes to the site nearest to the centre. With no image loaded yet no point lies inside. The
/// result is the update's.
[[nodiscard]] std::unique_ptr<RadarAction>
RequestUpdate(const RadarScene& scene, RadarAction::Done done);

} // namespace raincast
