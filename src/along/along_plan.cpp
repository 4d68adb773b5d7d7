// SPDX-License-Identifier: MIT
#include "along/along_plan.h"

#include "geo/local_frame.h"
#include "radar/catalogue/products.h"

#include <algorithm>

namespace raincast {

namespace {

constexpr qint64 kFrameBytes = 25'000;
constexpr qint64 kLayersBytes = 110'000;
constexpr qint64 kRanges = 2;

} // namespace

std::vector<AlongSite> sitesWithin(GeoPosition from, double metres) {
    const LocalFrame frame(from);
    std::vector<AlongSite> sites;
    for (const RadarSite& site : radarSites()) {
        const float distance = siteDistanceMetres(frame, site);
        if (distance <= metres) {
            sites.push_back({&site, distance});
        }
    }
    std::stable_sort(sites.begin(), sites.end(), [](const AlongSite& a, const AlongSite& b) {
        return a.metres < b.metres;
    });
    return sites;
}

qint64 estimatedBytes(std::size_t sites, const RadarState& like) {
    const qint64 frames = like.animate ? like.frameCount : 1;
    const qint64 products = kRadarProductCount;
    return static_cast<qint64>(sites) * (products * frames * kFrameBytes + kRanges * kLayersBytes);
}

} // namespace raincast
