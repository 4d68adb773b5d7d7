// SPDX-License-Identifier: MIT
#pragma once

#include "weather/item_weather.h"

namespace raincast {

/// The radar item's dialogs, over its page. Each blocks until it is closed; what its OK asks for is
/// loaded in the background.
class CItemWeather::Dialogs {
public:
    /// The item is borrowed; its page has a window.
    explicit Dialogs(CItemWeather& item) : m_item(item) {}

    /// Offers the sites near a position; all of them at latitude 0.
    void chooseStation(GeoPosition position);
    void editAnimation();
    void editLayers();
    void editStorage();

private:
    void followCache(const QString& folder);

    CItemWeather& m_item;
};

} // namespace raincast
