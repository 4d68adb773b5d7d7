// SPDX-License-Identifier: MIT
#pragma once

#include "geo/local_frame.h"

namespace raincast {

/// The way from an origin to a position in the origin's LocalFrame, the short way round: a position
/// on the other side of 180 degrees is near.
[[nodiscard]] LocalOffset shortWay(GeoPosition origin, GeoPosition position);

/// The direction in which the origin lies from the end of a way: degrees true, 0 to 360. Offsets in
/// metres.
[[nodiscard]] float bearingBack(float east, float north);

} // namespace raincast
