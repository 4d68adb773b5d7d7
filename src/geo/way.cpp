// SPDX-License-Identifier: MIT
#include "geo/way.h"

#include <cmath>
#include <numbers>

namespace raincast {

namespace {

constexpr double kDegreesPerRadian = 180 / std::numbers::pi;
constexpr double kWholeTurn = 360;

} // namespace

LocalOffset shortWay(GeoPosition origin, GeoPosition position) {
    const double turned = std::remainder(position.longitude - origin.longitude, kWholeTurn);
    return LocalFrame(origin).toMetres({position.latitude, origin.longitude + turned});
}

float bearingBack(float east, float north) {
    const auto degrees = static_cast<float>(std::atan2(-east, -north) * kDegreesPerRadian);
    return degrees < 0 ? degrees + static_cast<float>(kWholeTurn) : degrees;
}

} // namespace raincast
