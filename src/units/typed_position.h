// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"

#include <QStringView>

#include <optional>

namespace raincast {

/// Reads a latitude and a longitude as people type them, with more forms than
/// CUnits::parsePosition(), but no guesses:
///
///     37.375, -121.917        37 22.5, -121 55        37°22'30"N 121°55'W
///     N37.375, W121.917       37 22.5 N, 121 55 W     37-22.5N 121-55W
///
/// A comma divides the two, if there is one. Without one they part where both make sense; where
/// that is in several places, in the middle of the numbers. Each has a number of degrees, then
/// perhaps of minutes and of seconds up to 60, of which the last may have decimals, and a letter of
/// its own hemisphere on one side, or a sign. A minus may be the one of print (U+2212), too.
///
/// Empty for any other text: a missing part is never taken for 0. The latitude is within 90
/// degrees, the longitude within 360.
[[nodiscard]] std::optional<GeoPosition> typedPosition(QStringView text);

} // namespace raincast
