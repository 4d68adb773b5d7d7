// SPDX-License-Identifier: MIT
#include "weather/weather_settings.h"

#include "persist/little_endian.h"
#include "radar/catalogue/products.h"

namespace raincast {

namespace {

struct LayerByte {
    std::size_t offset;
    bool BasemapLayers::*shown;
};
constexpr LayerByte kLayerBytes[] = {
    {0, &BasemapLayers::topo},      {1, &BasemapLayers::highways}, {2, &BasemapLayers::rivers},
    {20, &BasemapLayers::counties}, {21, &BasemapLayers::cities},
};

struct StateByte {
    std::size_t offset;
    bool RadarState::*flag;
};
constexpr StateByte kStateBytes[] = {{3, &RadarState::autoUpdate}, {22, &RadarState::showWarnings}};

struct Number {
    std::size_t offset;
    int RadarState::*number;
    std::int32_t least;
    std::int32_t most;
};
constexpr Number kNumbers[] = {
    {4, &RadarState::frameCount, kLeastFrames, kMostFrames},
    {8, &RadarState::frameInterval, 1, kMostFrameInterval},
    {24, &RadarState::product, 0, static_cast<std::int32_t>(kRadarProductCount) - 1},
};

constexpr std::size_t kAnimate = 12;
constexpr std::size_t kReserved = 16;

} // namespace

WeatherSettingsBlock encodeWeatherSettings(const RadarState& state, const BasemapLayers& layers) {
    WeatherSettingsBlock block{};
    for (const LayerByte& row : kLayerBytes) {
        block[row.offset] = layers.*row.shown ? 1 : 0;
    }
    for (const StateByte& row : kStateBytes) {
        block[row.offset] = state.*row.flag ? 1 : 0;
    }
    for (const Number& row : kNumbers) {
        storeLittleEndian<std::int32_t>(state.*row.number, block.data() + row.offset);
    }
    storeLittleEndian<std::int32_t>(state.animate ? 1 : 0, block.data() + kAnimate);
    storeLittleEndian<std::int32_t>(1, block.data() + kReserved);
    return block;
}

void decodeWeatherSettings(
    const WeatherSettingsBlock& block, RadarState& state, BasemapLayers& layers
) {
    for (const LayerByte& row : kLayerBytes) {
        if (block[row.offset] <= 1) {
            layers.*row.shown = block[row.offset] == 1;
        }
    }
    for (const StateByte& row : kStateBytes) {
        if (block[row.offset] <= 1) {
            state.*row.flag = block[row.offset] == 1;
        }
    }
    for (const Number& row : kNumbers) {
        const auto number = loadLittleEndian<std::int32_t>(block.data() + row.offset);
        if (row.least <= number && number <= row.most) {
            state.*row.number = number;
        }
    }
    const auto animate = loadLittleEndian<std::int32_t>(block.data() + kAnimate);
    if (animate == 0 || animate == 1) {
        state.animate = animate == 1;
    }
}

} // namespace raincast
