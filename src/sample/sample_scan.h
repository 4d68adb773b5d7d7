// SPDX-License-Identifier: MIT
#pragma once

#include "nexrad/polar_scan.h"
#include "radar/catalogue/antenna_positions.h"
#include "sample/sample_memory.h"
#include "sample/sample_storm.h"

namespace raincast {

/// The climate of a site by its three letters.
[[nodiscard]] SampleClimate sampleClimate(std::string_view site);

/// How large cells are.
enum class Fineness {
    usual, ///< as in the Level III product that the tree's product was made of
    sharp, ///< radials half as wide, cells a quarter as long; of a raster half as long and wide
};

/// Sample weather as the site's radar would report it: radials of one degree or a half
/// (composite reflectivity: a raster), the reach of the Level III product that the tree's product
/// was made of. The memory only saves time.
[[nodiscard]] PolarScan sampleScan(
    const AntennaPosition& antenna, Product product, FileTime time, SampleMemory& memory,
    Fineness fineness = Fineness::usual
);

} // namespace raincast
