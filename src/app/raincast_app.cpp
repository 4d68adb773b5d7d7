// SPDX-License-Identifier: MIT
#include "app/raincast_app.h"

#include "core/text.h"
#include "page/item.h"
#include "persist/serial_reader.h"
#include "persist/serial_writer.h"
#include "radar/catalogue/frame_name.h"
#include "radar/catalogue/products.h"
#include "weather/item_weather.h"
#include "weather/page_default_weather.h"

#include <algorithm>

namespace raincast {

CRaincastApp::~CRaincastApp() {
    clear(); // the map views, which have the marks
}

CAppPaged::Page& CRaincastApp::append(std::unique_ptr<Page> page) {
    if (auto* const display = dynamic_cast<CPageDisplay*>(page.get())) {
        display->beforeItemIsShown([this](CPageDisplay::CItem& item) { prepare(item); });
        for (const auto& item : display->items()) {
            giveTools(*item); // it may update itself before it is shown
        }
    }
    return CAppPaged::append(std::move(page));
}

void CRaincastApp::prepare(CPageDisplay::CItem& item) {
    if (auto* const map = dynamic_cast<CItemMapView*>(&item)) {
        map->useMarks(m_marks);
    }
    giveTools(item);
    if (auto* const radar = dynamic_cast<CItemWeather*>(&item)) {
        radar->beginWith(std::exchange(m_firstShow, {}));
    }
}

void CRaincastApp::giveTools(CPageDisplay::CItem& item) const {
    auto* const radar = dynamic_cast<CItemWeather*>(&item);
    if (radar != nullptr && m_downloads != nullptr) {
        radar->useDownloads(*m_downloads);
    }
    if (radar != nullptr && m_warnings != nullptr) {
        radar->useWarnings(*m_warnings);
    }
}

bool CRaincastApp::loading() const {
    return anyRadar(&CItemWeather::loading);
}

bool CRaincastApp::pictureComing() const {
    return anyRadar(&CItemWeather::pictureComing);
}

bool CRaincastApp::sharpComing() const {
    return anyRadar(&CItemWeather::sharpComing);
}

bool CRaincastApp::sharpLoopComing() const {
    return anyRadar(&CItemWeather::sharpLoopComing);
}

bool CRaincastApp::anyRadar(bool (CItemWeather::*is)() const) const {
    const auto* const page = dynamic_cast<const CPageDisplay*>(current());
    return page != nullptr &&
           std::any_of(page->items().begin(), page->items().end(), [is](const auto& item) {
               const auto* const radar = dynamic_cast<const CItemWeather*>(item.get());
               return radar != nullptr && (radar->*is)();
           });
}

void CRaincastApp::writeLoop(const QString& path, ItemPictures::Done done) {
    const auto* const page = dynamic_cast<const CPageDisplay*>(current());
    if (page != nullptr) {
        for (const auto& item : page->items()) {
            if (auto* const radar = dynamic_cast<CItemWeather*>(item.get())) {
                radar->pictures().writeLoop(path, std::move(done));
                return;
            }
        }
    }
    done(tl::unexpected(Text::tr("The page has no radar item")));
}

QString CRaincastApp::listing() const {
    const auto* const page = dynamic_cast<const CPageDisplay*>(current());
    if (page == nullptr) {
        return {};
    }
    for (const auto& item : page->items()) {
        const auto* const radar = dynamic_cast<const CItemWeather*>(item.get());
        if (radar != nullptr && !radar->state().siteId.isEmpty()) {
            const RadarState& state = radar->state();
            return listingDirectory(state.siteId, ProductCode(state.product).toString());
        }
    }
    return {};
}

QString CRaincastApp::problem() const {
    const auto* const page = dynamic_cast<const CPageDisplay*>(current());
    return page != nullptr ? page->statusText() : QString();
}

QString CRaincastApp::caption() const {
    const auto* const page = dynamic_cast<const CPageDisplay*>(current());
    return page != nullptr ? page->caption() : QString();
}

void CRaincastApp::takeFrom(CRaincastApp& other) {
    m_marks.takeFrom(other.m_marks); // first: map views that are shown have the marks
    CAppPaged::takeFrom(other);
}

bool CRaincastApp::Read(CSerialReader& reader) {
    m_marks.clear(); // as the pages: a file that is loaded again must not double anything
    reader.readInto(&m_marks);
    const bool read = CAppPaged::Read(reader);
    reader.readInto(nullptr);
    return read;
}

bool CRaincastApp::Write(CSerialWriter& writer) const {
    return CAppPaged::Write(writer) && (m_marks.marks().empty() || writer.writeObject(m_marks));
}

void CRaincastApp::createDefaultPages() {
    append(std::make_unique<CPageDefaultWeather>());
}

} // namespace raincast
