// SPDX-License-Identifier: MIT
#include "player/loop_player.h"

#include "core/busy_guard.h"
#include "player/loop_setting.h"
#include "radar/animation.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace raincast {

namespace {

std::chrono::milliseconds stepTime() {
    return std::chrono::milliseconds(
        kLoopSpeeds[static_cast<std::size_t>(LoopSetting::speed())].milliseconds
    );
}

} // namespace

LoopPlayer::LoopPlayer(RadarState& state, Timers& timers, std::function<void()> stepped)
    : m_state(state), m_stepped(std::move(stepped)),
      m_clock(timers.make([this] { clockFired(); })) {}

bool LoopPlayer::tick() {
    if (m_paused) {
        return false;
    }
    if (LoopSetting::speed() == LoopSpeed::normal) {
        return stepAnimation(m_state);
    }
    if (hasLoop() && !std::exchange(m_clockRuns, true)) {
        m_clock->start(stepTime());
    }
    return false;
}

void LoopPlayer::clockFired() {
    m_clockRuns = false;
    if (m_paused || LoopSetting::speed() == LoopSpeed::normal || BusyGuard::active()) {
        return;
    }
    if (stepAnimation(m_state)) {
        m_clockRuns = true;
        m_clock->start(stepTime());
        m_stepped();
    }
}

void LoopPlayer::stopClock() {
    m_clock->stop();
    m_clockRuns = false;
}

void LoopPlayer::play() {
    m_paused = false;
    if (const auto index = shown(); index && *index + 1 == m_state.frames.size()) {
        place(0);
    }
}

void LoopPlayer::pause() {
    if (const auto index = shown(); index && !m_paused) {
        show(*index);
    }
    m_paused = true;
}

void LoopPlayer::show(std::size_t index) {
    if (index >= m_state.frames.size()) {
        return;
    }
    m_paused = true;
    stopClock();
    place(index);
    m_pausedAt = index + 1 < m_state.frames.size() ? m_state.current.path : QString();
}

void LoopPlayer::step(int by) {
    const auto count = static_cast<int>(m_state.frames.size());
    if (const auto index = shown()) {
        const int wanted = (static_cast<int>(*index) + by) % count;
        show(static_cast<std::size_t>(wanted < 0 ? wanted + count : wanted));
    }
}

// As if the loop had come there by itself: it counts a tick more than frames.
void LoopPlayer::place(std::size_t index) {
    m_state.current = m_state.frames[index];
    m_state.position = index + 1;
    m_state.animationCounter = static_cast<int>(index) + 2;
}

std::optional<std::size_t> LoopPlayer::shown() const {
    const auto& frames = m_state.frames;
    if (frames.empty()) {
        return std::nullopt;
    }
    const auto found = std::find_if(frames.begin(), frames.end(), [this](const RadarFrame& frame) {
        return frame.path == m_state.current.path;
    });
    return found != frames.end() ? static_cast<std::size_t>(found - frames.begin())
                                 : frames.size() - 1;
}

void LoopPlayer::framesChanged() {
    const auto& frames = m_state.frames;
    if (!m_paused || frames.empty()) {
        return;
    }
    const auto found = std::find_if(frames.begin(), frames.end(), [this](const RadarFrame& frame) {
        return frame.path == m_pausedAt;
    });
    show(
        found != frames.end() ? static_cast<std::size_t>(found - frames.begin()) : frames.size() - 1
    );
}

} // namespace raincast
