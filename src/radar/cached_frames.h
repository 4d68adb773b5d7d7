// SPDX-License-Identifier: MIT
#pragma once

#include "radar/radar_state.h"

#include <vector>

namespace raincast {

/// What the disk holds for a radar item.
struct CachedRadar {
    std::vector<RadarFrame> frames; ///< oldest first, all of them loaded
    bool complete = false;          ///< all frames of the state could be loaded, and it had some
    RadarWarnings warnings;
};

/// Loads the frames of a state's list. When one of them cannot be loaded, or the cache has a newer
/// one, it loads the newest frames of site and product that the cache has instead, chosen as an
/// update chooses them.
///
/// The state is the caller's copy: it may be called in any thread.
[[nodiscard]] CachedRadar loadCachedRadar(const RadarState& state, FileTime now);

} // namespace raincast
