// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// The weather item's commands. The numbers are never used again for others.
enum WeatherCommand : int {
    kNearbyStations = 40028,
    kUpdateRadar = 40032, ///< the main window's third tool button
    kAnimation = 40033,
    kLayers = 40034,
    kStorage = 40035,
    kAllStations = 40044,
};

} // namespace raincast
