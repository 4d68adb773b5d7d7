// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/sites.h"

#include <QStringView>

#include <optional>
#include <vector>

namespace raincast {

/// The sites to choose from at a position, as the station dialog lists them.
struct SiteList {
    struct Row {
        const RadarSite* site = nullptr; ///< never null
        /// Metres from the position; none where there is no position.
        std::optional<float> distanceMetres;
    };

    std::vector<Row> rows;
    /// The row to select at first: that of the current site, if it is listed.
    std::optional<std::size_t> selected;
    /// Whether the rows are the sites near the position, nearest first; otherwise they are all
    /// sites in the table's order.
    bool nearby = false;
};

/// The sites less than 500 km from a position (degrees), nearest first; all sites where there are
/// none so near, or without a position, which a latitude of exactly 0 stands for. Of sites at the
/// very same distance only the first in the table is listed.
[[nodiscard]] SiteList listSites(double latitude, double longitude, QStringView currentId);

} // namespace raincast
