// SPDX-License-Identifier: MIT
#pragma once

#include "position/navigator/navigator_status.h"

#include <cstdint>

namespace raincast {

struct CDataGPSPosition;

/// A position as the navigator tells it: 64 bytes of the shared file, in this order
/// (docs/formats/navigator.md).
struct NavigatorPosition {
    double latitude = 0;           ///< degrees, north positive; any number, or none
    double longitude = 0;          ///< degrees, east positive; any number, or none
    float course = 0;              ///< degrees
    float speed = 0;               ///< knots
    float altitude = 0;            ///< metres as a rule
    std::uint32_t unixSeconds = 0; ///< since 1970, UTC
    bool valid = false;            ///< there is a fix
    float extra1 = 0;
    float extra2 = 0;
};

/// Asks the navigator for its position by the newer request and, if it does not know that one, by
/// the older. `position` means something when the status is success. A file that is too short is
/// kNavigatorFileFailed.
[[nodiscard]] NavigatorStatus getNavigatorPosition(NavigatorPosition& position);

/// Tells the navigator a position that came from elsewhere. Parameters that could not be written
/// show only as a file that the navigator finds too short.
NavigatorStatus setNavigatorPosition(const CDataGPSPosition& position);

} // namespace raincast
