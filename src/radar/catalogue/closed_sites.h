// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "radar/catalogue/antenna_positions.h"

#include <string_view>

namespace raincast {

/// A site that was closed, and the radar that covers its region since.
struct ClosedSite {
    std::string_view site;
    FileTime since;
    AntennaPosition follower;
};

/// The row of a site that is closed at a time; null for any other.
[[nodiscard]] const ClosedSite* findClosedSite(std::string_view site, FileTime time);

} // namespace raincast
