// SPDX-License-Identifier: MIT
#pragma once

#include "radar/radar_state.h"

#include <vector>

namespace raincast {

/// What the disk holds for a radar item.
struct CachedRadar {
    std::vector<RadarFrame> frames; ///< oldest first
    bool complete = false;          ///< all frames of the state could be loaded, and it had some
    RadarWarnings warnings;
};

/// Loads all frames of a state's list. When one of them cannot be loaded, or the cache has a newer
/// one, it loads the newest frames of site and product that the cache has instead, chosen as an
/// update chooses them.
///
/// The state is the caller's copy: it may be called in any thread.
[[nodiscard]] CachedRadar loadCachedRadar(const RadarState& state, FileTime now);

/// Of the same, what is shown first: all frames of the state's list, of which only the first, the
/// oldest, is loaded, and the warnings. No frames where that one cannot be loaded or the cache has
/// a newer one than the list: only all of them tell then what is shown.
[[nodiscard]] CachedRadar loadFirstOfCachedRadar(const RadarState& state, FileTime now);

/// Whether a state has its frames of loadFirstOfCachedRadar() still.
[[nodiscard]] bool lacksLaterFrames(const RadarState& state);

} // namespace raincast
