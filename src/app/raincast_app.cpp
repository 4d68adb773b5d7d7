// SPDX-License-Identifier: MIT
#include "app/raincast_app.h"

#include "display/page_display.h"

namespace raincast {

QString CRaincastApp::problem() const {
    const auto* const page = dynamic_cast<const CPageDisplay*>(current());
    return page != nullptr ? page->statusText() : QString();
}

void CRaincastApp::createDefaultPages() {
    auto page = std::make_unique<CPageDisplay>();
    page->setName(QStringLiteral("Weather"));
    append(std::move(page));
}

} // namespace raincast
