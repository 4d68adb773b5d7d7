// SPDX-License-Identifier: MIT
#include "app/raincast_app.h"

#include "display/page_display.h"
#include "weather/page_default_weather.h"

namespace raincast {

QString CRaincastApp::problem() const {
    const auto* const page = dynamic_cast<const CPageDisplay*>(current());
    return page != nullptr ? page->statusText() : QString();
}

QString CRaincastApp::caption() const {
    const auto* const page = dynamic_cast<const CPageDisplay*>(current());
    return page != nullptr ? page->caption() : QString();
}

void CRaincastApp::createDefaultPages() {
    append(std::make_unique<CPageDefaultWeather>());
}

} // namespace raincast
