// SPDX-License-Identifier: MIT
#include "weather/item_weather_dialogs.h"

#include "core/text.h"
#include "core/user_change.h"
#include "stations/dlg_station.h"
#include "weather/dlg_animation.h"
#include "weather/dlg_layers.h"
#include "weather/dlg_storage.h"
#include "weather/item_weather_loading.h"

#include <algorithm>
#include <utility>

namespace raincast {

void CItemWeather::Dialogs::chooseStation(GeoPosition position) {
    const CDataGPSPosition& fix = m_item.lastFix();
    const auto own =
        fix.valid() ? std::optional(GeoPosition{fix.latitude, fix.longitude}) : std::nullopt;
    raincast::CDlgStation dialog(
        position, m_item.m_state.siteId, Text::tr("the map's middle"), own
    );
    if (dialog.run(m_item.page()->widget()) != Dialog::kOk) {
        return;
    }
    if (const auto site = dialog.chosenSite()) {
        UserChange::announce();
        m_item.m_loading->load(*site, true);
    }
}

void CItemWeather::Dialogs::editAnimation() {
    if (raincast::CDlgAnimation(m_item.m_state).run(m_item.page()->widget()) == Dialog::kOk) {
        UserChange::announce();
        m_item.m_loading->update();
    }
}

void CItemWeather::Dialogs::editLayers() {
    RadarState& state = m_item.m_state;
    raincast::CDlgLayers dialog(state, m_item.m_layers);
    if (dialog.run(m_item.page()->widget()) != Dialog::kOk) {
        return;
    }
    UserChange::announce();
    if (state.siteId.isEmpty()) {
        return;
    }
    if (dialog.basemapsChanged() && dialog.radarChanged()) {
        m_item.m_loading->loadThenUpdate(state.siteId);
    } else if (dialog.basemapsChanged()) {
        m_item.m_loading->load(state.siteId, false);
    } else if (dialog.radarChanged()) {
        m_item.m_loading->update();
    }
}

void CItemWeather::Dialogs::editStorage() {
    StorageRequest request;
    request.viewCentre = m_item.centrePosition();
    request.cacheFolder = m_item.m_state.cacheFolder;
    request.siteId = m_item.m_state.siteId;
    request.progress = [this](int done, int wanted) { m_item.m_loading->progress(done, wanted); };
    raincast::CDlgStorage dialog(std::move(request), [this](bool waiting) {
        m_item.m_loading->hold(waiting);
        m_item.m_loading->showWaiting(waiting);
    });
    dialog.run(m_item.page()->widget());
    if (dialog.working()) {
        // The program is to end.
        m_item.m_state.status = Text::tr("Moving the image cache.\nThe program ends then.\n");
        m_item.refresh();
        dialog.finish();
    }
    if (dialog.cacheFolder() != m_item.m_state.cacheFolder) {
        followCache(dialog.cacheFolder());
        UserChange::announce();
    }
    m_item.invalidate();
}

// The cache has another root now, and the frames' files with it.
void CItemWeather::Dialogs::followCache(const QString& folder) {
    RadarState& state = m_item.m_state;
    const QString before = std::exchange(state.cacheFolder, folder) + u'/';
    const auto follow = [&](RadarFrame& frame) {
        if (frame.path.startsWith(before)) {
            frame.path.replace(0, before.size(), folder + u'/');
        }
    };
    std::for_each(state.frames.begin(), state.frames.end(), follow);
    follow(state.current);
}

} // namespace raincast
