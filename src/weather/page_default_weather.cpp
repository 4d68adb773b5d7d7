// SPDX-License-Identifier: MIT
#include "weather/page_default_weather.h"

#include "display/item.h"
#include "paged/page_type.h"
#include "weather/item_weather.h"

namespace raincast {

/// "Weather", as the user adds it.
class CPageDefaultWeather::Type : public CAppPaged::PageType {
public:
    Type() : PageType(QStringLiteral("Weather"), kRankWeatherPage) {}

    [[nodiscard]] std::unique_ptr<CAppPaged::Page> create(QWidget* /*window*/) const override {
        return std::make_unique<CPageDefaultWeather>();
    }
};

namespace {

const CPageDefaultWeather::Type& weatherType() {
    static const CPageDefaultWeather::Type type;
    return type;
}

// The list of types is read by the user; this one must be in it before anybody makes such a page.
[[maybe_unused]] const auto& registered = weatherType();

} // namespace

CPageDefaultWeather::CPageDefaultWeather() : CPageDisplay(&weatherType()) {
    setName(weatherType().name());
    auto weather = std::make_unique<CItemWeather>();
    m_weather = weather.get();
    addItem(std::move(weather));
}

void CPageDefaultWeather::size(int width, int height) {
    CPageDisplay::size(width, height);
    if (contains(m_weather)) {
        m_weather->setRectangle({0, 0, deviceSize().width(), deviceSize().height()});
    }
}

} // namespace raincast
