// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"

class QPainter;

namespace raincast {

struct MapSight;

/// The distance from one range ring to the next, in metres: a round one (1, 2 or 5 and zeros) of
/// the user's unit, so that about four rings lie within a distance. 0 for a distance that is not
/// above 0.
[[nodiscard]] double ringStep(double metres);

/// Draws rings at round distances round a position, each with its distance at its top, as many as
/// are seen.
void drawRangeRings(QPainter& painter, const MapSight& sight, GeoPosition middle);

} // namespace raincast
