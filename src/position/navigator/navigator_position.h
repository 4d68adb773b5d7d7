// SPDX-License-Identifier: MIT
#pragma once

#include "position/navigator/navigator_status.h"

#include <cstdint>
#include <tl/expected.hpp>

namespace raincast {

struct CDataGPSPosition;
struct NavigatorLink;

/// A position as the navigator gives it: 64 bytes of the shared file, in this order
/// (docs/formats/navigator.md).
struct NavigatorPosition {
    double latitude = 0;           ///< degrees, north positive; any number, or not a number
    double longitude = 0;          ///< degrees, east positive; any number, or not a number
    float course = 0;              ///< degrees
    float speed = 0;               ///< knots
    float altitude = 0;            ///< metres as a rule
    std::uint32_t unixSeconds = 0; ///< since 1970, UTC
    bool valid = false;            ///< there is a fix
    float extra1 = 0;
    float extra2 = 0;
};

/// Asks the navigator for its position by the newer request and, if it does not know that one, by
/// the older. Fails with the navigator's status; a file that is too short is kNavigatorFileFailed.
[[nodiscard]] tl::expected<NavigatorPosition, NavigatorStatus>
getNavigatorPosition(NavigatorLink& link);

/// Gives the navigator a position that came from elsewhere. If the parameters could not be written,
/// only the navigator notices: its file is too short.
NavigatorStatus setNavigatorPosition(NavigatorLink& link, const CDataGPSPosition& position);

} // namespace raincast
