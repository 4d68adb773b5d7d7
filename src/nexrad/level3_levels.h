// SPDX-License-Identifier: MIT
#pragma once

#include "nexrad/level3_description.h"
#include "nexrad/level3_kinds.h"
#include "nexrad/polar_scan.h"

#include <string>

namespace raincast {

/// Fills a scan's tables of values and colour levels from the thresholds of its product. An error
/// sentence when they make no sense, else empty. `messageOffset` is that of the message header.
[[nodiscard]] std::string readLevel3Levels(
    const Level3Description& description, const Level3Kind& kind, std::size_t messageOffset,
    PolarScan& scan
);

} // namespace raincast
