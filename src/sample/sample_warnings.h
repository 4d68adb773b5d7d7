// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "radar/catalogue/antenna_positions.h"
#include "radar/catalogue/product.h"
#include "tree/weather_warning.h"

#include <vector>

namespace raincast {

/// The warnings that hold at a site at a time, for the strongest storms of its sample weather: each
/// stands for 45 minutes from where its storm was when it was issued to where it would go.
[[nodiscard]] std::vector<WeatherWarning>
sampleWarnings(const AntennaPosition& antenna, Range range, FileTime time);

} // namespace raincast
