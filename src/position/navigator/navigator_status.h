// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace raincast {

/// What came of an operation of the navigator link. A navigator may answer any other number, too.
enum NavigatorStatus : std::uint32_t {
    kNavigatorSuccess = 0,
    kNavigatorNoFolder = 1,        ///< linked, but nothing says where the shared file is
    kNavigatorNotStarted = 3,      ///< it was started, but its window did not appear
    kNavigatorGone = 4,            ///< its window no longer exists
    kNavigatorNoMutex = 6,         ///< the mutex could not be created
    kNavigatorFileFailed = 8,      ///< the shared file cannot be opened, or is too short
    kNavigatorUnknownRequest = 11, ///< the navigator's: it does not know the request
    kNavigatorNoPosition = 12,     ///< the navigator's: it has no position at present
    kNavigatorAbsent = 16,         ///< it does not run, and was not to be started
};

/// The requests to the navigator.
enum NavigatorRequest : std::uint32_t {
    kNavigatorGetPosition = 31,
    kNavigatorSetPosition = 32,
    kNavigatorGetPositionNewer = 0x8004, ///< 32772
};

} // namespace raincast
