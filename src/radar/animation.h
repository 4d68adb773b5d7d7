// SPDX-License-Identifier: MIT
#pragma once

#include "radar/radar_state.h"

namespace raincast {

// The frames of a state as a loop, and when it updates itself. Both go by ticks of half a second.
// In the loop every frame stays for a tick, the newest for three; one blank tick follows.

/// One tick of the loop. Returns whether the state must be painted anew. Fewer than two frames
/// never move.
[[nodiscard]] bool stepAnimation(RadarState& state);

/// Puts the loop back to the oldest frame and shows it; without frames nothing is shown.
void rewindAnimation(RadarState& state);

/// Whether an automatic update is due.
[[nodiscard]] bool updateIsDue(const RadarState& state, FileTime now);

/// After an automatic update that was due at `now`: if it brought nothing newer, the next one is
/// due five minutes after this one was, not after now. So a state whose time is long past catches
/// up by an update on each tick.
void postponeUpdate(RadarState& state, FileTime now);

} // namespace raincast
