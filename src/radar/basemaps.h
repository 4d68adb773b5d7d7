// SPDX-License-Identifier: MIT
#pragma once

#include "radar/bitmap.h"
#include "radar/radar_state.h"
#include "radar/servers.h"

#include <QString>

namespace raincast {

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
    Bitmap topo;    ///< opaque, under the radar, the rivers burnt into it; null: not shown
    Bitmap overlay; ///< lines on white, over the radar with white transparent; null: none
};

/// Changes `state` to a site and loads its map layers of the product's range, each file from the
/// cache or, once, from its server, and the world file that places them on the earth; with
/// `updateRadar` it drops the frames at the start and ends with an update of the radar. Blocks.
///
/// False when the world file, the topo or the rivers (of those that are shown) cannot be had, as
/// none can without a cache folder: then the status text says that the internet cannot be reached,
/// and what was loaded by then stays. A missing county, highway or city layer is no failure. With
/// `updateRadar` the result is the update's. A cached file that is defective is not fetched again;
/// its layer stays away.
bool LoadBasemaps(
    RadarState& state, const BasemapLayers& shown, Basemaps& basemaps, RadarView& view,
    const RadarServers& servers, const QString& siteId, bool updateRadar
);

} // namespace raincast
