// SPDX-License-Identifier: MIT
#pragma once

#include "radar/radar_state.h"

namespace raincast {

// Moves the frames of a state in a loop, and says when it updates itself. Both go by ticks of half
// a second. In the loop every frame stays for a tick, the newest for three; one blank tick follows.

/// Makes one tick of the loop. Returns whether the state must be painted again. Fewer than two
/// frames never move, and a picture on the screen waits for the next one to be loaded.
[[nodiscard]] bool stepAnimation(RadarState& state);

/// Puts the loop back to the oldest frame and shows it; without frames nothing is shown.
void rewindAnimation(RadarState& state);

/// Brings the next update near where it would come absurdly late: the clock was set back, or does
/// not know the date.
void limitUpdate(RadarState& state, FileTime now);

/// Whether an automatic update is due.
[[nodiscard]] bool updateIsDue(const RadarState& state, FileTime now);

/// To be called after an automatic update that was due at `now`: if it brought nothing newer, the
/// next one is due five minutes after this one was due, not after `now`. A state whose time is long
/// past catches up with an update on each tick.
void postponeUpdate(RadarState& state, FileTime now);

} // namespace raincast
