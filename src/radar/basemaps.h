// SPDX-License-Identifier: MIT
#pragma once

#include "radar/image/bitmap.h"
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
    Bitmap topo;     ///< opaque, under the radar, the rivers burnt into it; null: not shown
    Bitmap overlay;  ///< lines on white, over the radar with white transparent; null: none
    int missing = 0; ///< how many layers that are to be shown could not be had
};

/// Changes `state` to a site and loads its map layers of the product's range, each file from the
/// cache or, where that has none that can be used, from its server, and the world file that places
/// them on the earth; with `updateRadar` it drops the frames at the start and ends with an update
/// of the radar. Blocks.
///
/// False when the world file, the topo or the rivers (of those that are shown) cannot be had: then
/// the status text says that the internet cannot be reached, or that the cache cannot be written,
/// and what was loaded by then stays. A missing county, highway or city layer is no failure, nor is
/// one that came and is defective. With `updateRadar` the result is the update's.
bool LoadBasemaps(
    RadarState& state, const BasemapLayers& shown, Basemaps& basemaps, RadarView& view,
    const RadarServers& servers, const QString& siteId, bool updateRadar
);

/// What commands and automatic updates call. While the view's centre lies inside the radar image,
/// updates the radar of the site that is shown and then tries the layers again that could not be
/// had; otherwise changes to the site nearest to the centre. With no image loaded yet no point lies
/// inside. The result is the update's.
bool RequestUpdate(
    RadarState& state, const BasemapLayers& shown, Basemaps& basemaps, RadarView& view,
    const RadarServers& servers
);

} // namespace raincast
