// SPDX-License-Identifier: MIT
#pragma once

#include "nexrad/polar_scan.h"
#include "radar/catalogue/antenna_positions.h"
#include "sample/sample_memory.h"
#include "sample/sample_storm.h"

namespace raincast {

/// The climate of a site by its three letters.
[[nodiscard]] SampleClimate sampleClimate(std::string_view site);

/// Sample weather as the site's radar would report it: radials of one degree (composite
/// reflectivity: a raster), cells and reach as in the Level III product that the tree's product was
/// made of. The memory only saves time.
[[nodiscard]] PolarScan
sampleScan(const AntennaPosition& antenna, Product product, FileTime time, SampleMemory& memory);

} // namespace raincast
