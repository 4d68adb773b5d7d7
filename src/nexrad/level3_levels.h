// SPDX-License-Identifier: MIT
#pragma once

#include "nexrad/level3_description.h"
#include "nexrad/level3_kinds.h"
#include "nexrad/polar_scan.h"

#include <QString>

#include <tl/expected.hpp>

namespace raincast {

/// Fills a scan's tables of values and colour levels from the thresholds of its product, or says in
/// a sentence why these make no sense. `messageOffset` is that of the message header.
[[nodiscard]] tl::expected<void, QString> readLevel3Levels(
    const Level3Description& description, const Level3Kind& kind, std::size_t messageOffset,
    PolarScan& scan
);

} // namespace raincast
