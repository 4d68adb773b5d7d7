// SPDX-License-Identifier: MIT
#include "weather/page_default_weather.h"

#include "core/text.h"
#include "page/item.h"
#include "page/page_type.h"
#include "weather/item_weather.h"

#include <utility>

namespace raincast {

/// "Weather", as the user adds it.
class CPageDefaultWeather::Type : public CAppPaged::PageType {
public:
    Type() : PageType(Text::marked("Weather"), kRankWeatherPage) {}

    [[nodiscard]] std::unique_ptr<CAppPaged::Page> create(QWidget* /*window*/) const override {
        return std::make_unique<CPageDefaultWeather>();
    }
};

namespace {

const CPageDefaultWeather::Type& weatherType() {
    static const CPageDefaultWeather::Type type;
    return type;
}

// The user reads the list of types; this one must be in it before the first such page is made.
[[maybe_unused]] const auto& registered = weatherType();

} // namespace

CPageDefaultWeather::CPageDefaultWeather()
    : CPageDefaultWeather(std::make_unique<CItemWeather>()) {}

CPageDefaultWeather::CPageDefaultWeather(std::unique_ptr<CItemWeather> weather)
    : CPageDisplay(&weatherType()), m_weather(weather.get()) {
    setName(weatherType().name());
    addItem(std::move(weather));
}

CPageDefaultWeather::~CPageDefaultWeather() = default;

void CPageDefaultWeather::size(int width, int height) {
    CPageDisplay::size(width, height);
    if (m_weather != nullptr) {
        m_weather->setRectangle({0, 0, deviceSize().width(), deviceSize().height()});
    }
}

void CPageDefaultWeather::itemDeleted(const CItem& item) {
    CPageDisplay::itemDeleted(item);
    if (&item == m_weather) {
        m_weather = nullptr;
    }
}

} // namespace raincast
