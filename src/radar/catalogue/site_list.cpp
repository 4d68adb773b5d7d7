// SPDX-License-Identifier: MIT
#include "radar/catalogue/site_list.h"

#include <cmath>
#include <map>

namespace raincast {

namespace {

constexpr float kNearbyMetres = 500'000;

void addNearby(SiteList& list, const LocalFrame& frame) {
    std::map<float, const RadarSite*> byDistance;
    for (const RadarSite& site : radarSites()) {
        const float distance = siteDistanceMetres(frame, site);
        if (distance < kNearbyMetres) {
            byDistance.emplace(distance, &site);
        }
    }
    for (const auto& [distance, site] : byDistance) {
        list.rows.push_back({site, distance});
    }
    list.nearby = !list.rows.empty();
}

void addAll(SiteList& list, const std::optional<LocalFrame>& frame) {
    for (const RadarSite& site : radarSites()) {
        SiteList::Row row{&site, std::nullopt};
        if (frame) {
            row.distanceMetres = siteDistanceMetres(*frame, site);
        }
        list.rows.push_back(row);
    }
}

} // namespace

SiteList listSites(double latitude, double longitude, QStringView currentId) {
    SiteList list;
    std::optional<LocalFrame> frame;
    if (latitude != 0 && std::isfinite(latitude) && std::isfinite(longitude)) {
        frame.emplace(GeoPosition{latitude, longitude});
        addNearby(list, *frame);
    }
    if (!list.nearby) {
        addAll(list, frame);
    }
    for (std::size_t i = 0; i < list.rows.size(); ++i) {
        if (list.rows[i].site->idText() == currentId) {
            list.selected = i;
        }
    }
    return list;
}

} // namespace raincast
