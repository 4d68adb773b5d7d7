// SPDX-License-Identifier: MIT
#pragma once

#include "geo/local_frame.h"

#include <QStringView>

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

namespace raincast {

/// A weather radar that the tree has images of. Its texts live as long as the program.
struct RadarSite {
    const char16_t* name; ///< what users see: state or territory, a colon, the place
    char16_t id[4];       ///< three letters, used in every server path and file name
    float latitude;       ///< degrees; the reference point for distances, not the antenna
    float longitude;

    [[nodiscard]] constexpr QStringView nameText() const { return name; }
    [[nodiscard]] constexpr QStringView idText() const { return {id, 3}; }
};

inline constexpr std::size_t kRadarSiteCount = 155;
using RadarSiteTable = std::array<RadarSite, kRadarSiteCount>;

/// All sites in the order of their names, which is the order they are listed in.
[[nodiscard]] const RadarSiteTable& radarSites();

/// The site of exactly that id (letter case counts); null for an unknown one.
[[nodiscard]] const RadarSite* findRadarSite(QStringView id);

/// Metres from the frame's origin to the site's reference point.
[[nodiscard]] float siteDistanceMetres(const LocalFrame& frame, const RadarSite& site);

/// The id of the site nearest to a position (degrees), of several as near the first in the table.
/// None only for a position that is not finite or absurdly far from the earth.
[[nodiscard]] std::optional<QStringView> NearestSite(double latitude, double longitude);

/// The sites that a user who typed an unknown one may have meant, best first, at most `most`: the
/// sites whose name contains the text, if it has four letters or more; otherwise those whose id is
/// the fewest typing errors away. Letter case does not count.
[[nodiscard]] std::vector<const RadarSite*> suggestRadarSites(QStringView typed, std::size_t most);

} // namespace raincast
