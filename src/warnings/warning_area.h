// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"
#include "radar/warning_texts.h"

namespace raincast {

/// Whether a warning holds at a position, in degrees: inside one of its outlines or on its edge,
/// and not within a hole. Sides are straight lines on a map of latitudes and longitudes, and may
/// lead over the 180th meridian. False for a position that is none.
[[nodiscard]] bool warnsAt(const WarningText& warning, const GeoPosition& position);

} // namespace raincast
