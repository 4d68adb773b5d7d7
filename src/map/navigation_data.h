// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace raincast {

/// The way from the user to the target mark. Published through Listener<NavigationData> after
/// every position with a fix while there is a target, and when the target is renamed or cleared:
/// CMarkManager::navigation() says whether the record holds then.
struct NavigationData {
    QString targetName;
    float distance = 0;        ///< metres
    float bearing = 0;         ///< of the target, degrees true, 0 to 360
    float relativeBearing = 0; ///< bearing less course, degrees, -180 to 180: positive is right
    float crossTrack = 0;      ///< metres to the right of the line from the start to the target,
                               ///< negative to the left
};

} // namespace raincast
