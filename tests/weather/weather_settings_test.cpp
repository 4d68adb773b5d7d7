// SPDX-License-Identifier: MIT
#include "weather/weather_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace raincast {
namespace {

using ::testing::ElementsAreArray;

// A new item's settings, typed from the layout.
constexpr WeatherSettingsBlock kDefaults = {
    1, 1, 1, 0, // topo, highways, rivers, auto-update
    6, 0, 0, 0, // frames
    9, 0, 0, 0, // minutes
    0, 0, 0, 0, // animate
    1, 0, 0, 0, // reserved
    1, 1, 1, 0, // counties, cities, warnings, padding
    0, 0, 0, 0, // product
};

TEST(WeatherSettingsTest, TheDefaultsAreTheseBytes) {
    EXPECT_THAT(encodeWeatherSettings({}, {}), ElementsAreArray(kDefaults));
}

TEST(WeatherSettingsTest, EverySettingHasItsPlace) {
    RadarState state;
    state.autoUpdate = true;
    state.frameCount = 25;
    state.frameInterval = 60;
    state.animate = true;
    state.showWarnings = false;
    state.product = 6;
    const BasemapLayers layers{false, true, false, true, false};
    const WeatherSettingsBlock expected = {0, 1, 1, 1, 25, 0, 0, 0, 60, 0, 0, 0, 1, 0,
                                           0, 0, 1, 0, 0,  0, 0, 0, 0,  0, 6, 0, 0, 0};
    EXPECT_THAT(encodeWeatherSettings(state, layers), ElementsAreArray(expected));

    RadarState read;
    BasemapLayers readLayers;
    decodeWeatherSettings(expected, read, readLayers);
    EXPECT_THAT(encodeWeatherSettings(read, readLayers), ElementsAreArray(expected));
}

struct Lie {
    std::size_t offset;
    std::uint8_t byte;
};

TEST(WeatherSettingsTest, NumbersOutOfRangeLeaveWhatThereIs) {
    const Lie lies[] = {{0, 2},  {1, 0xFF}, {2, 7},    {3, 2},  {4, 1},
                        {4, 26}, {7, 0x80}, {8, 0},    {8, 61}, {12, 2},
                        {20, 9}, {21, 255}, {22, 255}, {24, 7}, {27, 255}};
    for (const Lie& lie : lies) {
        WeatherSettingsBlock block = kDefaults;
        block[lie.offset] = lie.byte;
        RadarState state;
        BasemapLayers layers;
        decodeWeatherSettings(block, state, layers);
        EXPECT_THAT(encodeWeatherSettings(state, layers), ElementsAreArray(kDefaults))
            << "byte " << lie.offset;
    }
}

} // namespace
} // namespace raincast
