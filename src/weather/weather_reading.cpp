// SPDX-License-Identifier: MIT
#include "weather/weather_reading.h"

#include "core/clock.h"
#include "map/mark_manager.h"
#include "page/page_display.h"
#include "radar/catalogue/image_geometry.h"
#include "reading/reading_setting.h"
#include "window/command_set.h"
#include "window/commands.h"
#include "window/message_box.h"

#include <QMenu>
#include <QWidget>

#include <algorithm>

namespace raincast {

namespace {

Product productOf(int index) {
    const auto row = static_cast<std::size_t>(index);
    return row < kAllProducts.size() ? kAllProducts[row] : kAllProducts[0];
}

struct RingsCommand {
    int id;
    ReadingSetting::Rings rings;
};
constexpr RingsCommand kRings[] = {
    {kRingsRoundRadar, ReadingSetting::kRingsRoundRadar},
    {kRingsRoundPosition, ReadingSetting::kRingsRoundPosition},
};

} // namespace

RadarSight CItemWeather::Reading::sight() const {
    const RadarState& state = m_item.m_state;
    const CDataGPSPosition& fix = m_item.lastFix();
    const CMarkManager* const marks = m_item.marks();
    RadarSight sight(MapSight{m_item.area(), m_item.view(), m_item.geoReference()});
    sight.placed = m_item.placed();
    sight.product = productOf(state.product);
    sight.frame = m_item.shownEchoes();
    sight.now = Clock::current().now();
    sight.hasPicture = m_item.shownFrame() != nullptr;
    if (sight.frame) {
        sight.frameTime = takenAt(state.current);
    }
    if (sight.placed) {
        sight.radar = m_item.geoReference().pixelToGeo({kAntennaColumn, kAntennaRow});
    }
    if (fix.valid()) {
        sight.own = GeoPosition{fix.latitude, fix.longitude};
        sight.knots = double{fix.speed};
    }
    if (marks != nullptr && marks->hasTarget()) {
        sight.target = marks->target().position();
    }
    sight.width = static_cast<int>(sight.map.area.width() / m_item.pixelRatio());
    return sight;
}

void CItemWeather::Reading::show(bool changed) {
    if (changed) {
        static_cast<void>(holdFrame());
        m_item.invalidate();
    }
}

bool CItemWeather::Reading::command(int id) {
    const auto* const rings =
        std::find_if(std::begin(kRings), std::end(kRings), [id](const RingsCommand& row) {
            return row.id == id;
        });
    if (rings != std::end(kRings)) {
        const bool off = ReadingSetting::rings() == rings->rings;
        ReadingSetting::showRings(off ? ReadingSetting::kNoRings : rings->rings);
    } else if (id == kShowScale) {
        ReadingSetting::showScale(!ReadingSetting::scaleShown(sight().width));
    } else if (id == kMeasure || id == kMeasureFromHere) {
        const auto from = id == kMeasure ? m_item.centreOnImage() : m_item.menuPlace();
        if (from) {
            m_reading.measureFrom(*from);
        }
    } else if (id == kTrackStorm) {
        trackStorm();
    } else {
        return false;
    }
    m_item.invalidate();
    return true;
}

void CItemWeather::Reading::trackStorm() {
    const auto& frames = m_item.m_state.frames;
    const bool two = frames.size() > 1 && frames.front().bitmap && frames.back().bitmap &&
                     takenAt(frames.front()) && takenAt(frames.back());
    if (!two) {
        messageBox(
            m_item.page()->widget(),
            Text::tr("A storm is tracked through the frames of an animation.\n"
                     "Enable it with Weather, Animation first."),
            Text::tr("Track This Storm")
        );
        return;
    }
    m_reading.trackStorm();
    show(true);
}

void CItemWeather::Reading::prepareMenu(QMenu& menu) const {
    checkCommand(menu, kShowScale, ReadingSetting::scaleShown(sight().width));
    for (const RingsCommand& row : kRings) {
        checkCommand(menu, row.id, ReadingSetting::rings() == row.rings);
    }
    enableCommand(menu, kMeasure, m_item.centreOnImage().has_value());
}

QString CItemWeather::Reading::heading(QPoint place) const {
    return RadarReading::readout(sight(), place).join(u'\n');
}

bool CItemWeather::Reading::tapped(QPoint place) {
    const bool taken = m_reading.tap(place, sight());
    show(taken);
    return taken;
}

bool CItemWeather::Reading::pressedAgain(QPoint place) {
    if (m_reading.use() == RadarReading::Use::none) {
        return false;
    }
    static_cast<void>(tapped(place));
    return true;
}

// An item that nobody reads is not looked at again.
bool CItemWeather::Reading::readsPosition() const {
    return m_reading.inUse() || ReadingSetting::rings() == ReadingSetting::kRingsRoundPosition;
}

bool CItemWeather::Reading::wordsChanged() const {
    return m_reading.use() != RadarReading::Use::none && m_reading.wordsChanged(sight());
}

bool CItemWeather::Reading::key(int key) {
    if (key == Qt::Key_Escape) {
        return end();
    }
    const bool taken =
        (key == Qt::Key_Return || key == Qt::Key_Enter) && m_reading.takeMiddle(sight());
    show(taken);
    return taken;
}

bool CItemWeather::Reading::end() {
    const bool ended = m_reading.end();
    show(ended);
    return ended;
}

CItemWeather::Reading::Held CItemWeather::Reading::holdFrame() {
    const bool first = m_reading.use() == RadarReading::Use::trackFirst;
    const bool last = m_reading.use() == RadarReading::Use::trackLast;
    auto& frames = m_item.m_state.frames;
    if ((!first && !last) || frames.empty()) {
        return {};
    }
    const RadarFrame& wanted = first ? frames.front() : frames.back();
    const bool changed = m_item.m_state.current.path != wanted.path;
    m_item.m_state.current = wanted;
    return {true, changed};
}

} // namespace raincast
