// SPDX-License-Identifier: MIT
#pragma once

#include "live_sim/live_sim.h"

namespace raincast {

/// Weather of all sites that goes on: each radar makes a volume every five minutes of the system's
/// clock, not all at the same time, and a warning moves over the country. Volumes leave the bucket
/// after some hours.
class MovingWeather {
public:
    /// The stand-ins are borrowed.
    MovingWeather(LiveSim& sim, int hours);

    /// Brings the bucket and the warnings up to now.
    void update();

private:
    void updateVolumes(FileTime now);
    void updateWarnings(FileTime now);

    LiveSim& m_sim;
    FileTime m_kept;
    FileTime m_upTo; ///< volumes up to this time are there
    FileTime m_warnedAt = 0;
};

} // namespace raincast
