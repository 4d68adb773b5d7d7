// SPDX-License-Identifier: MIT
#pragma once

#include "core/timers.h"
#include "radar/radar_state.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace raincast {

/// Plays the frames of a radar state as the user asks: at a speed, or not at all, and frame by
/// frame. Until the user asks for anything it is the loop of radar/animation.h.
class LoopPlayer {
public:
    /// `stepped` is called after each step that no tick() made. All are borrowed.
    LoopPlayer(RadarState& state, Timers& timers, std::function<void()> stepped);

    /// To be called every half second while the loop is on the screen. Returns whether it must be
    /// painted again. A speed other than the usual one has a clock of its own, which this starts.
    [[nodiscard]] bool tick();
    /// The loop has left the screen, or has another speed.
    void stopClock();

    /// Whether there is anything to play: two frames at least.
    [[nodiscard]] bool hasLoop() const { return m_state.frames.size() >= 2; }
    [[nodiscard]] bool playing() const { return !m_paused; }
    /// Goes on with the frame after the one that is shown; after the newest one with the oldest.
    void play();
    void pause();
    /// Shows a frame, and stays there; an index beyond the frames does nothing.
    void show(std::size_t index);
    /// Shows the frame that many steps later, or earlier below 0; from one end it goes to the
    /// other.
    void step(int by);
    /// The frame on the screen; between two rounds, when there is none, the newest. None without
    /// frames.
    [[nodiscard]] std::optional<std::size_t> shown() const;

    /// To be called when other frames were loaded: a loop that stands still shows the frame of
    /// before, or else the newest.
    void framesChanged();

private:
    void place(std::size_t index);
    void clockFired();

    RadarState& m_state;
    std::function<void()> m_stepped;
    std::unique_ptr<Alarm> m_clock;
    bool m_clockRuns = false;
    bool m_paused = false;
    QString m_pausedAt; ///< the path of the frame; empty: the newest, whichever that is
};

} // namespace raincast
