// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// The map view's commands beside zooming. The numbers are never used again for others.
enum MapCommand : int {
    kAddMark = 40920,
    kMarks = 40921,
    kFollowPosition = 40922,
    kShowPosition = 40923,
    kShowNavigation = 40924,
    kAddMarkHere = 40925, ///< at the place that a held press or the right button chose
    kGoToPosition = 40926,
};

} // namespace raincast
