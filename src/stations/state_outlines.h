// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace raincast {

/// Hundredths of a degree, north and east positive.
struct OutlinePoint {
    std::int16_t longitude;
    std::int16_t latitude;
};

/// The borders and coasts of the states, each line point by point, so coarse that they fit a map of
/// all of them on a screen.
[[nodiscard]] const std::vector<std::span<const OutlinePoint>>& stateOutlines();

/// What they are made of: before the points of each line stands one that has their number as its
/// longitude. scripts/draw-outlines writes it.
[[nodiscard]] std::span<const OutlinePoint> stateOutlinePoints();

} // namespace raincast
