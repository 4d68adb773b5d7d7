// SPDX-License-Identifier: MIT
#include "nexrad/level3_kinds.h"

#include <algorithm>
#include <array>

namespace raincast {

namespace {

constexpr double kKnotsPerMetreASecond = 3600 / 1852.0;
constexpr double kInchesPerHundredth = 0.01;

using Scale = Level3Scale;
using P = Product;

// The digital reflectivities reach 460 km and so cover the long range too.
constexpr auto kKinds = std::to_array<Level3Kind>({
    {19, Scale::sixteenLevels, 1, 1, true, P::baseReflectivity, {}},
    {20, Scale::sixteenLevels, 2, 1, true, P::longRangeReflectivity, {}},
    {27, Scale::sixteenLevels, 1, 1, true, P::velocity, {}},
    {37, Scale::sixteenLevels, 1, 1, false, P::compositeReflectivity, {}},
    {56, Scale::sixteenLevels, 1, 1, true, P::stormRelativeVelocity, {}},
    {78, Scale::sixteenLevels, 2, 1, false, P::oneHourPrecipitation, {}},
    {80, Scale::sixteenLevels, 2, 1, false, P::totalPrecipitation, {}},
    {94, Scale::digital, 1, 1, true, P::baseReflectivity, P::longRangeReflectivity},
    {99, Scale::digital, .25, kKnotsPerMetreASecond, true, P::velocity, {}},
    {153, Scale::digital, .25, 1, true, P::baseReflectivity, P::longRangeReflectivity},
    {154, Scale::digital, .25, kKnotsPerMetreASecond, true, P::velocity, {}},
    {170, Scale::accumulation, .25, kInchesPerHundredth, false, P::oneHourPrecipitation, {}},
    {172, Scale::accumulation, .25, kInchesPerHundredth, false, P::totalPrecipitation, {}},
});

} // namespace

std::span<const Level3Kind> level3Kinds() {
    return kKinds;
}

const Level3Kind* findLevel3Kind(int code) {
    const auto* kind = std::find_if(kKinds.begin(), kKinds.end(), [&](const Level3Kind& row) {
        return row.code == code;
    });
    return kind != kKinds.end() ? kind : nullptr;
}

} // namespace raincast
