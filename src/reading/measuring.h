// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"

#include <QStringList>

class QPainter;

namespace raincast {

struct MapSight;

/// A way that the user measures.
struct MeasuredWay {
    GeoPosition from;
    GeoPosition to;
    double knots = 0; ///< of the user; 0 where it is not known
};

/// Distance, bearing there and back, and, at a speed that is one, how long it takes:
/// {"12.3 Mi  045° / 225°", "32 min at 23 mph"}.
[[nodiscard]] QStringList measuredLines(const MeasuredWay& way);

/// "32 min", "1 h 05 min"; "over 99 h" for longer.
[[nodiscard]] QString durationText(double minutes);

/// As a part of a sentence: "32 minutes", "1 h 05 minutes".
[[nodiscard]] QString durationWords(double minutes);

/// Draws the way and, at its end, its lines.
void drawMeasuredWay(QPainter& painter, const MapSight& sight, const MeasuredWay& way);

} // namespace raincast
