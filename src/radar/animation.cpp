// SPDX-License-Identifier: MIT
#include "radar/animation.h"

namespace raincast {

namespace {

// Ticks at the end of the loop, beside one for each frame.
constexpr int kTicksAtEnd = 3;
constexpr FileTime kRetryAfter = 5 * kFileTimePerMinute;
// The clocks of radars, servers and users differ by minutes.
constexpr FileTime kLongestWait = 60 * kFileTimePerMinute;

} // namespace

bool stepAnimation(RadarState& state) {
    if (state.frames.size() < 2) {
        return false;
    }
    if (state.position < state.frames.size()) {
        if (state.current.bitmap && !state.frames[state.position].bitmap) {
            return false;
        }
        state.current = state.frames[state.position++];
    } else if (state.animationCounter - kTicksAtEnd >= state.frameCount) {
        state.current = {};
        state.position = 0;
        state.animationCounter = 0;
    }
    ++state.animationCounter;
    return true;
}

void rewindAnimation(RadarState& state) {
    state.position = 0;
    state.animationCounter = 0;
    state.current = state.frames.empty() ? RadarFrame{} : state.frames.front();
}

void limitUpdate(RadarState& state, FileTime now) {
    if (state.nextUpdate > now + kLongestWait) {
        state.nextUpdate = now + kRetryAfter;
    }
}

bool updateIsDue(const RadarState& state, FileTime now) {
    return state.autoUpdate && now > state.nextUpdate;
}

void postponeUpdate(RadarState& state, FileTime now) {
    if (state.nextUpdate <= now) {
        state.nextUpdate += kRetryAfter;
    }
}

} // namespace raincast
