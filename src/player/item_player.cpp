// SPDX-License-Identifier: MIT
#include "player/item_player.h"

#include "core/clock.h"
#include "page/item.h"
#include "player/frame_time.h"
#include "radar/frame.h"
#include "window/command_set.h"

#include <QMenu>
#include <QMetaObject>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace raincast {

namespace {

/// An item of this height, in logical pixels, has room for a bar.
constexpr int kTallEnough = 400;
/// The bar takes at most a third of an item.
constexpr int kBarsInItem = 3;

struct LoopKey {
    char16_t unit;
    int command;
};
constexpr LoopKey kKeys[] = {{u' ', kPlayLoop}, {u',', kStepBack}, {u'.', kStepForward}};

LoopSpeed speedOf(int command) {
    return kLoopSpeeds[static_cast<std::size_t>(command - kHalfSpeed)].speed;
}

} // namespace

ItemPlayer::ItemPlayer(
    Item& item, RadarState& state, std::function<bool()> loading,
    std::function<void(int before)> covers
)
    : m_item(item), m_state(state), m_loading(std::move(loading)), m_covers(std::move(covers)),
      m_loop(state, m_timers, [this] { changed(); }) {}

ItemPlayer::~ItemPlayer() {
    delete m_bar;
}

QWidget* ItemPlayer::window() const {
    return m_item.page() != nullptr ? m_item.page()->widget() : nullptr;
}

bool ItemPlayer::tick() {
    if (window() == nullptr) {
        m_loop.stopClock();
        return false;
    }
    const bool moved = m_loop.tick();
    if (!moved && barShown()) {
        m_bar->follow(seen()); // its age goes on, even if nothing else does
    }
    return moved;
}

void ItemPlayer::changed() {
    if (window() == nullptr) {
        m_loop.stopClock();
    }
    m_item.invalidate();
    if (barShown()) {
        m_bar->follow(seen());
    }
}

bool ItemPlayer::command(int id) {
    if (kHalfSpeed <= id && id <= kFourTimesSpeed) {
        LoopSetting::setSpeed(speedOf(id));
        m_loop.stopClock();
        changed();
        return true;
    }
    switch (id) {
    case kPlayLoop:
        if (m_loop.playing()) {
            m_loop.pause();
        } else {
            m_loop.play();
        }
        break;
    case kStepBack:
        m_loop.step(-1);
        break;
    case kStepForward:
        m_loop.step(1);
        break;
    case kUtcTimes:
        LoopSetting::setUtc(!LoopSetting::utc());
        break;
    case kShowBar:
        toggleBar();
        break;
    default:
        return false;
    }
    changed();
    return true;
}

bool ItemPlayer::character(char16_t unit) {
    const auto* const key =
        std::find_if(std::begin(kKeys), std::end(kKeys), [unit](const LoopKey& each) {
            return each.unit == unit;
        });
    return key != std::end(kKeys) && command(key->command);
}

void ItemPlayer::prepareMenu(QMenu& menu) const {
    for (const int command : {kPlayLoop, kStepBack, kStepForward}) {
        enableCommand(menu, command, m_loop.hasLoop());
    }
    checkCommand(menu, kPlayLoop, m_loop.playing() && m_loop.hasLoop());
    for (const LoopSpeedRow& row : kLoopSpeeds) {
        const int command = kHalfSpeed + static_cast<int>(row.speed);
        checkCommand(menu, command, LoopSetting::speed() == row.speed);
    }
    checkCommand(menu, kUtcTimes, LoopSetting::utc());
    enableCommand(menu, kShowBar, m_loop.hasLoop());
    checkCommand(menu, kShowBar, barShown());
}

void ItemPlayer::tapped() {
    if (m_loop.hasLoop()) {
        toggleBar();
    }
}

void ItemPlayer::toggleBar() {
    const bool wanted = !barShown();
    const auto asWished = wanted ? LoopSetting::Bar::always : LoopSetting::Bar::never;
    LoopSetting::setBar(wanted == tallEnough() ? LoopSetting::Bar::whereRoomIs : asWished);
    itemDrawn(); // as after a painting
}

bool ItemPlayer::tallEnough() const {
    const QWidget* const page = window();
    const double ratio = page != nullptr ? page->devicePixelRatio() : 1;
    return m_item.rectangle().toRect().height() / ratio >= kTallEnough;
}

bool ItemPlayer::barIsWanted() const {
    const LoopSetting::Bar bar = LoopSetting::bar();
    const bool wanted =
        bar == LoopSetting::Bar::always || (bar == LoopSetting::Bar::whereRoomIs && tallEnough());
    const bool hasLoop = m_loop.hasLoop() || (m_loading() && barShown());
    return wanted && hasLoop && !m_item.page()->layoutMode();
}

// Nothing where the item has no room for it, or another item lies over the place.
QRect ItemPlayer::barPlace() const {
    const double ratio = window()->devicePixelRatio();
    const QRect item = m_item.rectangle().toRect();
    const QRect shown(
        qRound(item.left() / ratio), qRound(item.top() / ratio), qRound(item.width() / ratio),
        qRound(item.height() / ratio)
    );
    const int height = m_bar->heightForWidth(shown.width());
    if (shown.width() < m_bar->leastWidth() || shown.height() < kBarsInItem * height) {
        return {};
    }
    const QRect place(shown.left(), shown.bottom() + 1 - height, shown.width(), height);
    const QPoint middle = (QPointF(place.center()) * ratio).toPoint();
    return m_item.page()->itemAt({middle.x(), middle.y()}) == &m_item ? place : QRect();
}

PlayerBar::Loop ItemPlayer::seen() const {
    PlayerBar::Loop loop;
    loop.frames = static_cast<int>(m_state.frames.size());
    loop.playing = m_loop.playing();
    loop.speed = LoopSetting::speed();
    loop.utc = LoopSetting::utc();
    if (const auto shown = m_loop.shown()) {
        const RadarFrame& frame = m_state.frames[*shown];
        const FileTime taken = takenAt(frame).value_or(0);
        loop.shown = static_cast<int>(*shown);
        loop.time = frameTimeText(taken, loop.utc);
        loop.age = frameAgeText(taken, Clock::current().now());
    }
    return loop;
}

// Not within the painting: what is shown and hidden then would have to be painted as well.
void ItemPlayer::itemDrawn() {
    if (!std::exchange(m_followIsComing, true)) {
        QMetaObject::invokeMethod(
            &m_context, [this] { follow(); }, Qt::QueuedConnection
        );
    }
}

void ItemPlayer::makeBar(QWidget& window) {
    if (m_bar && m_bar->parentWidget() == &window) {
        return;
    }
    delete m_bar;
    m_bar = new PlayerBar(
        window, {[this] { command(kPlayLoop); },
                 [this](int steps) {
                     m_loop.step(steps);
                     changed();
                 },
                 [this](int frame) {
                     m_loop.show(static_cast<std::size_t>(frame));
                     changed();
                 },
                 [this](LoopSpeed speed) { command(kHalfSpeed + static_cast<int>(speed)); },
                 [this](bool /*utc*/) { command(kUtcTimes); }}
    );
}

void ItemPlayer::follow() {
    m_followIsComing = false;
    int covered = 0;
    if (window() != nullptr && barIsWanted()) {
        makeBar(*window());
        const QRect place = barPlace();
        if (!place.isEmpty()) {
            m_bar->setGeometry(place);
            m_bar->follow(seen());
            const int top =
                static_cast<int>(std::floor(place.top() * window()->devicePixelRatio()));
            covered = std::max(m_item.rectangle().bottom - top, 0);
        }
    }
    if (m_bar) {
        m_bar->setVisible(covered > 0);
    }
    if (const int before = std::exchange(m_covered, covered); before != covered) {
        m_covers(before);
    }
}

} // namespace raincast
