// SPDX-License-Identifier: MIT
#include "page/taps.h"

#include "window/screen_metrics.h"

#include <QGuiApplication>
#include <QStyleHints>

#include <chrono>
#include <utility>

namespace raincast {

int fingerTremble() {
    return ScreenMetrics::current().highResolution() ? 12 : 6;
}

Taps::Taps(std::function<void(QPoint)> single)
    : m_single(std::move(single)), m_interval(QtTimers().make([this] { m_single(m_tapped); })) {}

void Taps::pressed(QPoint place) {
    m_interval->stop();
    m_pressed = place;
}

bool Taps::lifted(QPoint place) {
    const auto from = std::exchange(m_pressed, std::nullopt);
    return from && (place - *from).manhattanLength() <= fingerTremble();
}

void Taps::awaitSecond(QPoint place) {
    m_tapped = place;
    const int interval = QGuiApplication::styleHints()->mouseDoubleClickInterval();
    m_interval->start(std::chrono::milliseconds(interval));
}

void Taps::ended() {
    m_interval->stop();
    m_pressed.reset();
}

} // namespace raincast
