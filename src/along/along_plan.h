// SPDX-License-Identifier: MIT
#pragma once

#include "net/servers.h"
#include "radar/catalogue/sites.h"
#include "radar/radar_state.h"

#include <QString>

#include <vector>

namespace raincast {

/// A site and how far it is.
struct AlongSite {
    const RadarSite* site = nullptr; ///< never null
    float metres = 0;
};

/// The sites within a distance, the nearest first.
[[nodiscard]] std::vector<AlongSite> sitesWithin(GeoPosition from, double metres);

/// What is to be taken along: of each site every product, and the map layers of both ranges.
struct AlongPlan {
    std::vector<QString> siteIds; ///< in the order in which they are fetched
    RadarState like;              ///< whose loop and cache are followed; of it nothing else counts
    RadarServers servers;
};

/// About how many bytes that is, if nothing of it is in the cache yet. Published frames have about
/// 25 kB, and the layers of a range 110 kB.
[[nodiscard]] qint64 estimatedBytes(std::size_t sites, const RadarState& like);

} // namespace raincast
