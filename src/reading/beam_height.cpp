// SPDX-License-Identifier: MIT
#include "reading/beam_height.h"

#include <cmath>
#include <numbers>

namespace raincast {

double beamHeight(double distanceMetres, double elevationDegrees) {
    constexpr double kBentRadius = 6'371'000 * 4.0 / 3;
    const double elevation = elevationDegrees * std::numbers::pi / 180;
    const double angle = elevation + distanceMetres / kBentRadius;
    return kBentRadius * (std::cos(elevation) / std::cos(angle) - 1);
}

} // namespace raincast
