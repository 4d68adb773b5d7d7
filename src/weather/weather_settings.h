// SPDX-License-Identifier: MIT
#pragma once

#include "basemap/basemaps.h"
#include "radar/radar_state.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace raincast {

/// The weather item's settings as they stand in a page file, byte by byte:
///
///     0  topo, highways, rivers, auto-update: a byte each, 0 or 1
///     4  frame count, frame interval (minutes): 32 bits each, signed
///    12  animate, a reserved flag that is 1: 32 bits each
///    20  counties, cities, warnings: a byte each; a byte of 0
///    24  product: 32 bits, an index into the product table
///
/// Numbers are little-endian.
inline constexpr std::size_t kWeatherSettingsSize = 28;
using WeatherSettingsBlock = std::array<std::uint8_t, kWeatherSettingsSize>;

[[nodiscard]] WeatherSettingsBlock
encodeWeatherSettings(const RadarState& state, const BasemapLayers& layers);

/// Takes the settings from a block; a number out of its range leaves the old value.
void decodeWeatherSettings(
    const WeatherSettingsBlock& block, RadarState& state, BasemapLayers& layers
);

} // namespace raincast
