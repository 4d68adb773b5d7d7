// SPDX-License-Identifier: MIT
#include "weather/item_weather_loading.h"

#include "radar/animation.h"
#include "radar/image/image_file.h"
#include "weather/first_show.h"
#include "weather/servers_setting.h"

#include <QFileInfo>
#include <QGuiApplication>

namespace raincast {

bool CItemWeather::Loading::begin(const FirstShow& first) {
    RadarState& state = m_item.m_state;
    if (first.choice) {
        state.product = first.choice->product.value_or(state.product);
        load(first.choice->siteId, true);
        return true;
    }
    if (state.siteId.isEmpty() && first.welcomeSite) {
        state.animate = true;
        load(*first.welcomeSite, true);
        return true;
    }
    return false;
}

void CItemWeather::Loading::resume() {
    if (m_item.placed()) {
        return;
    }
    RadarState& state = m_item.m_state;
    state.status = QStringLiteral("Loading...");
    m_item.refresh();
    const bool needRadar = !loadFrames();
    if (!state.frames.empty()) {
        rewindAnimation(state);
    }
    load(state.siteId, needRadar);
}

// Loads the frames that are not loaded yet, up to the first that cannot be; false when there is one
// or no frame at all.
bool CItemWeather::Loading::loadFrames() {
    for (RadarFrame& frame : m_item.m_state.frames) {
        if (!frame.bitmap && QFileInfo(frame.path).isFile()) {
            frame.bitmap = LoadImageFile(frame.path, kMostRadarPixels);
        }
        if (!frame.bitmap) {
            return false;
        }
    }
    return !m_item.m_state.frames.empty();
}

RadarScene CItemWeather::Loading::scene() {
    return {m_item.m_state, m_item.m_layers, m_basemaps, *this, ServersSetting::current()};
}

bool CItemWeather::Loading::load(const QString& siteId, bool updateRadar) {
    return LoadBasemaps(scene(), siteId, updateRadar);
}

bool CItemWeather::Loading::update() {
    const QString& siteId = m_item.m_state.siteId;
    if (siteId.isEmpty()) {
        return false;
    }
    // An image without a place (its page was not shown yet, or its layers could not be loaded) does
    // not show where the user looks: the item keeps its site.
    return m_item.placed() ? RequestUpdate(scene()) : load(siteId, true);
}

void CItemWeather::Loading::repaint() {
    m_item.refresh();
}

void CItemWeather::Loading::progress(int done, int wanted) {
    m_progress = {done, wanted};
    m_item.refresh();
}

// With the whole image in view the site stays, even if the item's centre lies outside of the image.
ImagePixel CItemWeather::Loading::centrePixel() const {
    return wholeImageInView() ? kImageCentre : m_item.centrePixel();
}

bool CItemWeather::Loading::wholeImageInView() const {
    const RadarState& state = m_item.m_state;
    const PagePoint first = m_item.view().toPage({0, 0});
    const PagePoint last = m_item.view().toPage({state.imageWidth - 1, state.imageHeight - 1});
    return m_item.rectangle().contains(first) && m_item.rectangle().contains(last);
}

GeoPosition CItemWeather::Loading::centrePosition() const {
    return m_item.centrePosition();
}

GeoReference& CItemWeather::Loading::geoReference() {
    return m_item.geoReference();
}

void CItemWeather::Loading::geoReferenceChanged(GeoPosition centre) {
    m_item.placeImage(centre);
}

void CItemWeather::Loading::showWaiting(bool waiting) {
    if (waiting) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        return;
    }
    QGuiApplication::restoreOverrideCursor();
    m_progress = {};
}

void CItemWeather::Loading::contentChanged() {
    if (CPageDisplay* page = m_item.page()) {
        page->contentChanged();
    }
}

} // namespace raincast
