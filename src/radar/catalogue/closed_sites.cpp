// SPDX-License-Identifier: MIT
#include "radar/catalogue/closed_sites.h"

#include <algorithm>
#include <vector>

namespace raincast {

namespace {

const std::vector<ClosedSite>& closedSites() {
    static const std::vector<ClosedSite> sites = {
        {"LIX", fromCalendar({2024, 1, 1}), {"HDC", 30.519, -90.407}},
    };
    return sites;
}

} // namespace

const ClosedSite* findClosedSite(std::string_view site, FileTime time) {
    const auto& sites = closedSites();
    const auto found = std::find_if(sites.begin(), sites.end(), [&](const ClosedSite& row) {
        return row.site == site && time >= row.since;
    });
    return found == sites.end() ? nullptr : &*found;
}

} // namespace raincast
